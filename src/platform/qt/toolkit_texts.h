#ifndef TAVREL_PLATFORM_QT_TOOLKIT_TEXTS_H_
#define TAVREL_PLATFORM_QT_TOOLKIT_TEXTS_H_

#include <QString>
#include <QTranslator>
#include <functional>
#include <utility>

#include "base/language.h"

namespace tavrel {

// A catalogue of what the toolkit says itself, as in its print dialog, to a German user. The
// language is asked at each text, so that a dialog opened behind a change of it speaks the new one.
// A file dialog asks in a thread of its own, too: the settings do not change beneath it.
class ToolkitCatalogue : public QTranslator {
 public:
  explicit ToolkitCatalogue(std::function<Language()> language) : language_(std::move(language)) {}

  // Empty, which leaves the toolkit's English, for an English user and without the catalogue.
  [[nodiscard]] QString translate(const char* context, const char* text, const char* hint,
                                  int number) const override;

 private:
  std::function<Language()> language_;
};

// All catalogues that the program needs, used by the toolkit while this lives.
class ToolkitTexts {
 public:
  // Where the catalogues are on this machine, if it has them.
  [[nodiscard]] static QString Directory();

  explicit ToolkitTexts(const std::function<Language()>& language,
                        const QString& directory = Directory());

 private:
  static void Use(ToolkitCatalogue& catalogue, const char* name, const QString& directory);

  ToolkitCatalogue dialogs_;
  ToolkitCatalogue port_;  // reasons why a port does not open
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_TOOLKIT_TEXTS_H_

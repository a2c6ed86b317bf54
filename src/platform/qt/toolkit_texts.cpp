#include "platform/qt/toolkit_texts.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace tavrel {

QString ToolkitCatalogue::translate(const char* context, const char* text, const char* hint,
                                    int number) const {
  return language_() == Language::kGerman ? QTranslator::translate(context, text, hint, number)
                                          : QString();
}

QString ToolkitTexts::Directory() {
  return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
}

ToolkitTexts::ToolkitTexts(const std::function<Language()>& language, const QString& directory)
    : dialogs_(language), port_(language) {
  Use(dialogs_, "qtbase_de", directory);
  Use(port_, "qtserialport_de", directory);
}

// A machine without the catalogues shows the toolkit's own English.
void ToolkitTexts::Use(ToolkitCatalogue& catalogue, const char* name, const QString& directory) {
  if (catalogue.load(name, directory)) {
    QCoreApplication::installTranslator(&catalogue);
  }
}

}  // namespace tavrel

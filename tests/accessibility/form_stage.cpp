// Shows one form after the other to a client of the accessibility bus: form_stage German|English
//
// For each form of the tour, and for each kind of box behind them, it prints one line of JSON with
// the name of the stop and the texts that the form shows, and waits with running events for a line
// on the standard input. Then it prints the texts once more, since some may have changed meanwhile,
// and goes on. It ends when the input does.

#include <unistd.h>

#include <QAbstractButton>
#include <QApplication>
#include <QEventLoop>
#include <QGroupBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QSocketNotifier>
#include <cstdio>
#include <string>

#include "docs/manual/form_tour.h"
#include "tests/accessibility/box_tour.h"

namespace tavrel {
namespace {

// Without the letter's mark and the blanks of the layout.
QString Words(QString text) {
  return text.remove('&').simplified();
}

// What a user with eyes reads.
QJsonArray ShownTexts(const QWidget& form) {
  QJsonArray texts;
  for (const auto* widget : form.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->window() != &form) {
      continue;
    }
    const QString text = Words(widget->property("text").toString());
    const bool is_label = qobject_cast<const QLineEdit*>(widget) == nullptr &&
                          qobject_cast<const QProgressBar*>(widget) == nullptr;
    if (!text.isEmpty() && is_label) {
      texts.append(text);
    }
  }
  return texts;
}

// False: nobody asks for a further form.
bool WaitForLine() {
  QEventLoop loop;
  bool has_line = false;
  QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &loop, [&] {
    char character = 0;
    has_line = read(STDIN_FILENO, &character, 1) == 1;
    if (!has_line || character == '\n') {
      loop.quit();
    }
  });
  loop.exec();
  return has_line;
}

void Tell(const QWidget& form, const QString& name) {
  const QJsonObject stop{{"stop", name}, {"texts", ShownTexts(form)}};
  std::puts(QJsonDocument(stop).toJson(QJsonDocument::Compact).constData());
  std::fflush(stdout);
}

bool Show(QWidget& form, const QString& name) {
  Tell(form, name);
  const bool goes_on = WaitForLine();
  Tell(form, name);
  return goes_on;
}

}  // namespace
}  // namespace tavrel

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  QApplication::setStyle("Fusion");
  QApplication::setCursorFlashTime(0);
  if (count != 2) {
    std::fputs("usage: form_stage German|English\n", stderr);
    return 2;
  }
  const bool is_german = std::string(arguments[1]) == "German";
  tavrel::FormTour forms(tavrel::LabWordsOf(is_german), tavrel::Show);
  tavrel::BoxTour boxes(is_german ? tavrel::Language::kGerman : tavrel::Language::kEnglish,
                        tavrel::Show);
  return forms.Make() && boxes.Make() ? 0 : 1;
}

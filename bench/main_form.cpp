// The main form with all that is behind it, as the program shows it when its splash is left.
// usage: main_form START DIRECTORY [SECONDS]    with settings and recordings in the directory
#include <QApplication>

#include "bench/first_look.h"
#include "bench/qt_machine.h"
#include "main/forms/tavrel.h"
#include "platform/qt/toolkit_texts.h"

int main(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, arguments);
  if (count < 3) {
    return 2;
  }
  const std::string home = arguments[2];
  tavrel::QtMachine machine(home);
  tavrel::LiveProgram program(machine.All(), home);
  if (!program.Load()) {
    return 1;
  }
  const tavrel::ToolkitTexts texts([] { return tavrel::Language::kGerman; });
  tavrel::Tavrel form({program.sheet, program.commands, program.cycle, program.start_up},
                      tavrel::kSlots);
  const tavrel::FirstLook look(form, arguments[1], count > 3 ? arguments[3] : "0");
  form.show();
  return QApplication::exec();
}

// The least that a program of this kind can be: a window with the same menu and a label for each
// cell of the sheet, and the same libraries.
#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QTimer>

#include "bench/first_look.h"

namespace {

constexpr int kRows = 12;
constexpr int kColumns = 6;
constexpr int kTick = 50;  // milliseconds

void FillMenu(QMainWindow& window) {
  QMenu* tools = window.menuBar()->addMenu("Tools");
  QMenu* diagnostic = window.menuBar()->addMenu("Diagnostic");
  for (int entry = 0; entry < kColumns; ++entry) {
    tools->addAction("Entry");
    diagnostic->addAction("Entry");
  }
  window.menuBar()->addAction("Help");
  window.menuBar()->addAction("Exit");
}

void FillSheet(QMainWindow& window) {
  auto* sheet = new QWidget;
  auto* grid = new QGridLayout(sheet);
  for (int row = 0; row < kRows; ++row) {
    for (int column = 0; column < kColumns; ++column) {
      grid->addWidget(new QLabel("228.4"), row, column);
    }
  }
  window.setCentralWidget(sheet);
}

}  // namespace

int main(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, arguments);
  QMainWindow window;
  const tavrel::FirstLook look(window, count > 1 ? arguments[1] : "0",
                               count > 2 ? arguments[2] : "0");
  FillMenu(window);
  FillSheet(window);
  QTimer timer;
  timer.start(kTick);
  window.resize(1000, 600);
  window.show();
  return QApplication::exec();
}

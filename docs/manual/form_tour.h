#ifndef TAVREL_DOCS_MANUAL_FORM_TOUR_H_
#define TAVREL_DOCS_MANUAL_FORM_TOUR_H_

#include <QPointF>
#include <QString>
#include <QWidget>
#include <chrono>
#include <functional>

#include "docs/manual/picture_bench.h"

namespace tavrel {

// What the lab of the pictures is called in one language.
[[nodiscard]] const LabWords& LabWordsOf(bool is_german);

// Opens all forms of the program, one after the other in the order of the manual, over two virtual
// instruments in this process and four recordings. Each form shows what a user sees, and the clock
// is made: each run shows the same values. Who looks at all forms, such as the pictures of the
// manual and the tests of accessibility and of room, goes on this tour, so that a new form needs
// one line here.
class FormTour {
 public:
  // Called with each form while it is open, and with the name of what it shows: that of the form,
  // or one that begins with it and a hyphen. False: this stop has failed.
  using Stop = std::function<bool(QWidget& form, const QString& name)>;

  FormTour(const LabWords& words, Stop stop) : bench_(words), stop_(std::move(stop)) {}

  // False: a form is missing, or a stop has failed. What was missing is on the standard error.
  [[nodiscard]] bool Make();

  [[nodiscard]] PictureBench& Bench() { return bench_; }

 private:
  using Action = std::function<void(QWidget& form)>;

  void Require(bool is_good, const char* what);
  void StopAt(QWidget& form, const char* name);
  void Take(const char* form, View view, const Action& action = {});
  // A form that a button of another one opens.
  void TakeBehind(QWidget& parent, const char* button, const char* form, const Action& action = {});
  void TakeBehindAs(QWidget& parent, const char* button, const char* form, const char* name,
                    const Action& action = {});
  void Click(QWidget& form, const char* name);
  static void Drag(QWidget& form, const char* plot_name, QPointF from, QPointF to);
  [[nodiscard]] bool TakeSplash();
  void TakeSettings();
  void TakeSetup();
  // Shows the worksheet of a slot, which stays open for the action.
  void OnWorksheet(int slot, const Action& action);
  void TakeWorksheet();
  void TakeController();
  void TakeProgram();
  [[nodiscard]] bool IsDrawn(int view);
  void TakeGraph();
  void TakeViews(QWidget& graph);
  void TakeDifference(QWidget& graph);
  void TakeFiles();
  // A screen that reads or measures is given the time that it takes.
  void TakeAfter(const char* form, View view, std::chrono::seconds time);
  void TakeService();
  // Each answer ends with the end of a line.
  void AskOnTerminal(QWidget& form, const char* command);
  void TakeTests();
  void TakeBoxes();

  PictureBench bench_;
  Stop stop_;
  bool is_whole_ = true;
};

}  // namespace tavrel

#endif  // TAVREL_DOCS_MANUAL_FORM_TOUR_H_

#include "tests/accessibility/box_tour.h"

#include <QApplication>

namespace tavrel {
namespace {

const Notice kQuestion{"COM1 is in use.\n\nClose that program, or choose another port.",
                       "Open COM1", BoxIcon::kQuestion};

}  // namespace

BoxTour::BoxTour(Language language, FormTour::Stop stop)
    : toolkit_texts_([language] { return language; }), stop_(std::move(stop)) {
  dialogs_.SpeakIn([language] { return language; });
  printer_.SpeakIn([language] { return language; });
  look_.setInterval(std::chrono::milliseconds(10));
  QObject::connect(&look_, &QTimer::timeout, &look_, [this] {
    if (QWidget* window = QApplication::activeModalWidget();
        window != nullptr && window->isVisible()) {
      look_.stop();
      StopAt(*window);
    }
  });
}

bool BoxTour::Make() {
  TakeModal("Box-message", [this] { dialogs_.Message(kQuestion); });
  TakeModal("Box-ok", [this] { static_cast<void>(dialogs_.AskOk(kQuestion)); });
  TakeModal("Box-retry", [this] { static_cast<void>(dialogs_.AskRetry(kQuestion)); });
  TakeModal("Box-exit", [this] { static_cast<void>(dialogs_.AskRetryOrExit(kQuestion)); });
  TakeModal("Box-yes", [this] { static_cast<void>(dialogs_.AskYes(kQuestion)); });
  TakeModal("Box-save", [this] { static_cast<void>(dialogs_.AskSave(kQuestion)); });
  TakeModal("Box-offer", [this] { static_cast<void>(dialogs_.Offer(kQuestion, "Open folder")); });
  TakeBeside("Box-beside", [this] { dialogs_.AskBeside(kQuestion, [](bool) {}); });
  TakeBeside("Notices", [this] {
    dialogs_.Announce({"M260314A.TUB: row 17, input 3: lost on the line", "Read  Tavrel"});
    dialogs_.Announce({"M260315A.BOX  not found !", "Read  file"});
  });
  TakeModal("PrintDialog", [this] {
    PrintChoice choice;
    choice.Document = "M260314A.TUB";
    static_cast<void>(printer_.Choose(choice));
  });
  return is_whole_;
}

void BoxTour::TakeModal(const QString& name, const std::function<void()>& open) {
  name_ = name;
  look_.start();
  open();
}

void BoxTour::TakeBeside(const QString& name, const std::function<void()>& open) {
  name_ = name;
  const QWidgetList before = QApplication::topLevelWidgets();
  open();
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!before.contains(window) && window->isVisible()) {
      StopAt(*window);
      return;
    }
  }
  is_whole_ = false;
}

void BoxTour::StopAt(QWidget& window) {
  is_whole_ = stop_(window, name_) && is_whole_;
  window.close();
}

}  // namespace tavrel

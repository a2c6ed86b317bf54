#ifndef TAVREL_TESTS_SUPPORT_WORK_SCREENS_H_
#define TAVREL_TESTS_SUPPORT_WORK_SCREENS_H_

#include <memory>

#include "work/forms/tav_color.h"
#include "work/forms/tav_coord.h"
#include "work/forms/tav_rec.h"
#include "work/forms/tav_wait.h"
#include "work/forms/tav_work.h"

namespace tavrel {

// The worksheet and its dialogs as real forms, joined to their rules as the program joins them.
class WorkScreens {
 public:
  struct Parts {  // all outlive this
    Worksheet& worksheet;
    RecordingSettings& recording;
    Coordinates& coordinates;
    ColourChoice& colours;
    WaitBar& wait_bar;
  };
  explicit WorkScreens(const Parts& parts) : parts_(parts) {}

  // Shows a form and returns when it has closed; nothing for the number of another form.
  void Run(View view) {
    if (view == View::kTavWork) {
      RunWorksheet();
    } else if (view == View::kTavRec) {
      TavRec(parts_.recording).Run();
    } else if (view == View::kTavCoord) {
      TavCoord(parts_.coordinates).Run();
    } else if (view == View::kTavColor) {
      TavColor(parts_.colours).Run();
    } else if (view == View::kTavWait) {
      RunWaitBar();
    }
  }

  // What the cycle calls in its ticks.
  void Refresh() {
    parts_.worksheet.Refresh();
    if (work_form_ != nullptr) {
      work_form_->ShowRefresh();
    }
  }
  void Advance() {
    parts_.wait_bar.Advance();
    if (wait_form_ != nullptr) {
      wait_form_->ShowStep();
    }
  }

  [[nodiscard]] const TavWork* WorkForm() const { return work_form_.get(); }

 private:
  void RunWorksheet() {
    parts_.worksheet.Open();
    if (work_form_ == nullptr) {
      work_form_ = std::make_unique<TavWork>(parts_.worksheet);
    }
    work_form_->Run();
  }
  void RunWaitBar() {
    parts_.wait_bar.Open();
    TavWait form(parts_.wait_bar);
    wait_form_ = &form;
    form.Run();
    wait_form_ = nullptr;
  }

  Parts parts_;
  std::unique_ptr<TavWork> work_form_;
  TavWait* wait_form_ = nullptr;  // while it is shown
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_WORK_SCREENS_H_

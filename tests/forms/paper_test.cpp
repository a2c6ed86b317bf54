#include <gtest/gtest.h>

#include <QPageLayout>
#include <QPrinter>
#include <optional>
#include <vector>

#include "platform/qt/qt_printer.h"

namespace tavrel {
namespace {

// Size and orientation of the paper over several runs of the program: each has a printer of its
// own, and the memory is a file in between.
class Paper : public testing::Test {
 protected:
  // A run in which the user chooses that sheet and leaves the dialog as `is_printed` says. What
  // the dialog began with.
  QPageLayout Run(QPageSize::PageSizeId size, QPageLayout::Orientation orientation,
                  bool is_printed = true) {
    QPageLayout began;
    QtPrinter printer(events, [&](QPrinter& to) {
      began = to.pageLayout();
      to.setOutputFormat(QPrinter::PdfFormat);
      to.setPageSize(QPageSize(size));
      to.setPageOrientation(orientation);
      return is_printed;
    });
    printer.RememberPaper([this] { return kept; }, [this](QSize sheet) { kept = sheet; });
    PrintChoice choice;
    EXPECT_EQ(printer.Choose(choice), is_printed);
    return began;
  }

  QtEvents events;
  std::optional<QSize> kept;
};

TEST_F(Paper, IsKeptAsItLies) {
  Run(QPageSize::A5, QPageLayout::Landscape);
  EXPECT_EQ(kept, QSize(595, 420));
  Run(QPageSize::A3, QPageLayout::Portrait);
  EXPECT_EQ(kept, QSize(842, 1191));
}

TEST_F(Paper, IsThereInTheNextRun) {
  for (const auto size : {QPageSize::A5, QPageSize::A4, QPageSize::A3, QPageSize::Letter}) {
    for (const auto orientation : {QPageLayout::Portrait, QPageLayout::Landscape}) {
      Run(size, orientation);
      const QPageLayout next = Run(QPageSize::Legal, QPageLayout::Portrait, false);
      EXPECT_EQ(next.pageSize().id(), size);
      EXPECT_EQ(next.orientation(), orientation);
    }
  }
}

TEST_F(Paper, OfADialogThatWasLeftIsForgotten) {
  Run(QPageSize::A5, QPageLayout::Landscape, false);
  EXPECT_EQ(kept, std::nullopt);
}

}  // namespace
}  // namespace tavrel

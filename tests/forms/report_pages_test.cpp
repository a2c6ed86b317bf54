#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QPageLayout>
#include <QProcess>
#include <QXmlStreamReader>

#include "platform/qt/qt_clipboard.h"
#include "platform/qt/qt_printer.h"
#include "platform/qt/qt_regional.h"
#include "tests/files/recording_fixture.h"
#include "tests/support/graph_bench.h"

namespace tavrel {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string OutputOf(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  EXPECT_TRUE(process.waitForFinished(20000)) << program.toStdString();
  EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
  return process.readAllStandardOutput().toStdString();
}

// The report of a recording of fifteen inputs as a PDF of A4, by the real printer of the program.
class TheReportOnPaper : public testing::Test, public GraphBench {
 protected:
  TheReportOnPaper() {
    header = BenchProgram::Header(2, 3, 15, false);
    header.UnitInterval = 6;
    header.UnitXmax = 500;
    header.UnitYmax = 1000;
    header.UnitRes = 0;
    header.UnitDesignation.Set("OVN:Röhrenofen Süd 7");
    program.state.Settings.Plant = "Keramische Werke Musterstadt";
    program.state.Settings.PFontName = "DejaVu Sans";
    program.state.Settings.PFontSize = 11;
    program.state.Settings.PDrawWidth = 2;
    SetCurves(15);
  }
  void SetCurves(int curves) {
    for (std::size_t input = 0; input < kInputs; ++input) {
      const int number = static_cast<int>(input) + 1;
      header.UnitColour[input + 1] =
          static_cast<std::int16_t>(number <= curves ? (number - 1) % 14 + 1 : 0);
      header.UnitInputName[input + 1].Set("Brennkammer Zone " + std::to_string(100 + number));
      header.UnitInputNote[input + 1].Set("Fühler " + std::to_string(200 + number) + " seit Mai");
    }
  }
  // Curves that rise by and by, of which the upper ones leave the part view.
  static std::vector<std::int16_t> Ramps() {
    std::vector<std::int16_t> words;
    for (int row = 0; row < 400; ++row) {
      for (int column = 1; column <= kInputs; ++column) {
        const double wave = 15 * std::sin(row / 20.0 + column);
        words.push_back(static_cast<std::int16_t>(20 * (40 * column + row * 1.1 + wave)));
      }
    }
    return words;
  }
  void ShowView(int mode) {
    LoadAndOpen(Ramps());
    ShowPart({20, 50}, {350, 800});
    if (mode > 0) {
      graph.CboXY_Click(mode);
      Tick();
    }
  }
  void AddMarks() {
    const ViewFrame& view = View(kPartView);
    for (int k = 0; k < kMarks; ++k) {
      const double x = view.XLeft + (view.XRight - view.XLeft) * (0.1 + 0.18 * k);
      const double y = view.YBottom + (view.YTop - view.YBottom) * (0.92 - 0.1 * k);
      graph.PbMark_Click(k == 2 ? 2 : 1);
      if (k == 2) {
        graph.Txt_for_Mark_Change("Klappe auf");
        graph.KeyEnter();
      } else {
        Click({x, y});
      }
      Click({x, y});
    }
  }
  void Print(QPageLayout::Orientation orientation, int copies = 1) {
    printer = std::make_unique<QtPrinter>(events, [this, orientation, copies](QPrinter& to) {
      to.setOutputFormat(QPrinter::PdfFormat);
      to.setOutputFileName(path);
      to.setPageSize(QPageSize(QPageSize::A4));
      to.setPageOrientation(orientation);
      to.setCopyCount(copies);
      return true;
    });
    GraphOutput output({program.state, graph, program.files.Journals(), program.dialogs,
                        program.events, *printer, program.clipboard, program.regional,
                        program.clock, program.shell});
    output.MnuPrint_Click();
  }
  std::string PrintedText(QPageLayout::Orientation orientation) {
    Print(orientation);
    return OutputOf("pdftotext", {"-layout", path, "-"});
  }
  std::string PdfInfo() { return OutputOf("pdfinfo", {path}); }
  // Dots of a colour on the page, at 50 dots to the inch.
  int DotsOf(const QColor& ink) {
    OutputOf("pdftoppm",
             {"-r", "50", "-png", "-singlefile", "-aa", "no", "-aaVector", "no", path, path});
    const QImage page(path + ".png");
    EXPECT_FALSE(page.isNull());
    int dots = 0;
    for (int y = 0; y < page.height(); ++y) {
      for (int x = 0; x < page.width(); ++x) {
        dots += page.pixelColor(x, y) == ink ? 1 : 0;
      }
    }
    return dots;
  }

  QtEvents events;
  std::unique_ptr<QtPrinter> printer;
  QString path = QString::fromStdString(program.home.File("report.pdf"));
};

TEST_F(TheReportOnPaper, KeepsItsTextsAsText) {
  ShowView(0);
  AddMarks();
  const std::string text = PrintedText(QPageLayout::Portrait);
  for (const char* wanted : {"Keramische Werke Musterstadt", "Röhrenofen Süd 7", "m260314a.ovn",
                             "Brennkammer Zone 101", "Brennkammer Zone 115", "Fühler 215 seit Mai",
                             "Tavrel-2", "14/03/2026", "600", "740.0 / 53.00 min", "Klappe auf"}) {
    EXPECT_THAT(text, HasSubstr(wanted));
  }
}

TEST_F(TheReportOnPaper, ListsTheShownCurvesInLandscape) {
  SetCurves(8);
  ShowView(2);
  const std::string text = PrintedText(QPageLayout::Landscape);
  EXPECT_THAT(text, HasSubstr("Brennkammer Zone 108"));
  EXPECT_THAT(text, Not(HasSubstr("Brennkammer Zone 109")));
  EXPECT_THAT(text, Not(HasSubstr("Fühler")));
  EXPECT_THAT(text, HasSubstr("°C"));
  EXPECT_THAT(PdfInfo(), HasSubstr("842 x 595 pts (A4)"));
}

TEST_F(TheReportOnPaper, ShrinksLongTextsInsteadOfCuttingThem) {
  program.state.Settings.Plant = std::string(60, 'W') + "end";
  header.UnitDesignation.Set("OVN:MMMMMMMMMMMMMMMM");
  header.UnitInputName[1].Set("WWWWWWWWWWWWWWWWWWWW");
  ShowView(0);
  for (const auto orientation : {QPageLayout::Portrait, QPageLayout::Landscape}) {
    const std::string text = PrintedText(orientation);
    EXPECT_THAT(text, HasSubstr(program.state.Settings.Plant));
    EXPECT_THAT(text, HasSubstr("MMMMMMMMMMMMMMMM"));
    EXPECT_THAT(text, HasSubstr("WWWWWWWWWWWWWWWWWWWW"));
    EXPECT_THAT(text, HasSubstr("m260314a.ovn"));
  }
}

TEST_F(TheReportOnPaper, HasItsTextsWhateverTheSizeOfTheFont) {
  ShowView(0);
  for (const double size : {1e9, 1e-30, 1e38}) {
    program.state.Settings.PFontSize = static_cast<float>(size);
    const std::string text = PrintedText(QPageLayout::Landscape);
    EXPECT_THAT(text, HasSubstr("Keramische Werke Musterstadt")) << size;
    EXPECT_THAT(text, HasSubstr("Brennkammer Zone 101")) << size;
    EXPECT_THAT(text, HasSubstr("Tavrel-2")) << size;
  }
}

TEST_F(TheReportOnPaper, IsInColour) {
  SetCurves(2);
  ShowView(0);
  Print(QPageLayout::Portrait);
  EXPECT_GT(DotsOf(Qt::red), 200);
  EXPECT_EQ(program.state.Settings.PColorType, 2);
  EXPECT_EQ(program.state.Settings.PrintName, kPdfPrinter);
}

TEST_F(TheReportOnPaper, HasAPageForEachCopy) {
  SetCurves(1);
  ShowView(0);
  Print(QPageLayout::Portrait, 3);
  EXPECT_THAT(PdfInfo(), HasSubstr("Pages:           3\n"));
  EXPECT_TRUE(program.dialogs.boxes.empty());
}

TEST_F(TheReportOnPaper, LeavesTheOldFileWhereTheNewOneCannotBeWritten) {
  ShowView(0);
  program.dialogs.boxes.clear();
  path = QString::fromStdString(program.home.File("missing/report.pdf"));
  Print(QPageLayout::Portrait);
  ASSERT_EQ(program.dialogs.boxes.size(), 1U);
  EXPECT_EQ(program.dialogs.boxes[0].Text, "There was a problem printing to your printer.");
  EXPECT_TRUE(program.state.GraphIdle);
  program.home.Write("report.pdf", "old");
  path = QString::fromStdString(program.home.File("report.pdf"));
  {
    const FullDisk full(4000);
    Print(QPageLayout::Portrait);
  }
  EXPECT_EQ(program.dialogs.boxes.size(), 2U);
  EXPECT_EQ(program.home.Read("report.pdf"), "old");
}

// A pattern of which every short piece begins anew is a solid line.
TEST_F(TheReportOnPaper, DrawsPatternsOverManyShortLines) {
  QImage page(400, 40, QImage::Format_RGB32);
  page.fill(Qt::white);
  QPainter painter(&page);
  PainterSurface surface(painter, page.rect(), 1);
  surface.SetScale({0, 0, 400, 40});
  surface.SetPen({PenMode::kCopy, PenStyle::kDash, 1});
  std::vector<Segment> lines;
  lines.reserve(400);
  for (int x = 0; x < 400; ++x) {
    lines.push_back({x + 0.0, 20.5, x + 1.0, 20.5, kBlack});
  }
  surface.Lines(lines);
  int black = 0;
  for (int x = 0; x < 400; ++x) {
    black += page.pixelColor(x, 20) == QColor(Qt::black) ? 1 : 0;
  }
  EXPECT_GT(black, 200);
  EXPECT_LT(black, 320);
}

TEST(TheRegion, WritesNumbersAndDatesAsPeopleThereDo) {
  const QtRegional german(QLocale(QLocale::German, QLocale::Germany));
  EXPECT_EQ(german.DecimalMark(), ",");
  EXPECT_EQ(german.ShortDate({2026, 3, 14, 10, 0, 0}), "14.03.26");
  const QtRegional american(QLocale(QLocale::English, QLocale::UnitedStates));
  EXPECT_EQ(american.DecimalMark(), ".");
  EXPECT_EQ(american.ShortDate({2026, 3, 14, 10, 0, 0}), "3/14/26");
}

// The clipboard of this process.
class TheClipboard : public TheReportOnPaper {
 protected:
  void CopyPicture() {
    GraphOutput output({program.state, graph, program.files.Journals(), program.dialogs,
                        program.events, program.printer, clipboard, program.regional, program.clock,
                        program.shell});
    output.MnuGraph_Click();
  }
  static const QMimeData& Content() { return *QGuiApplication::clipboard()->mimeData(); }

  QtClipboard clipboard;
};

TEST_F(TheClipboard, HoldsThePictureAsDotsAndAsStrokes) {
  SetCurves(2);
  ShowView(0);
  CopyPicture();
  ASSERT_TRUE(Content().hasImage());
  const QImage image = Content().imageData().value<QImage>();
  EXPECT_EQ(image.size(), QSize(1600, 900));
  int red = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      red += image.pixelColor(x, y) == QColor(Qt::red) ? 1 : 0;
    }
  }
  EXPECT_GT(red, 500);
  const QByteArray svg = Content().data("image/svg+xml");
  QXmlStreamReader reader(svg);
  QStringList texts;
  int strokes = 0;
  while (!reader.atEnd()) {
    reader.readNext();
    if (reader.isStartElement() && reader.name() == u"text") {
      texts << reader.readElementText().trimmed();
    } else if (reader.isStartElement() && reader.name() == u"polyline") {
      ++strokes;
    }
  }
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
  EXPECT_TRUE(texts.contains("Brennkammer Zone 101"));
  EXPECT_TRUE(texts.contains("Brennkammer Zone 102"));
  EXPECT_TRUE(texts.contains("200"));
  EXPECT_FALSE(texts.contains("Tavrel-2"));
  EXPECT_GT(strokes, 5);
}

TEST_F(TheClipboard, KeepsTheLineEndsOfATextAndReplacesThePicture) {
  SetCurves(2);
  ShowView(0);
  CopyPicture();
  clipboard.SetText("\"column 02  Tür\"\r\n60\t1,00\r\n");
  EXPECT_FALSE(Content().hasImage());
  EXPECT_EQ(Content().text().toStdString(), "\"column 02  Tür\"\r\n60\t1,00\r\n");
}

}  // namespace
}  // namespace tavrel

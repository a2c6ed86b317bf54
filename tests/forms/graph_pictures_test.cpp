#include <QDir>
#include <QFontDatabase>
#include <cmath>

#include "tests/forms/graph_form_bench.h"

namespace tavrel {
namespace {

constexpr int kRows = 300;

// The pictures of the graph dot by dot. They are compared with those in graph_pictures/, whose
// README tells how they are made anew. Letters are of a font that is the same everywhere.
class GraphPictures : public GraphFormBench {
 protected:
  GraphPictures() : font_before(QApplication::font()) {
    QFont font("DejaVu Sans");
    font.setPointSizeF(9);
    font.setHintingPreference(QFont::PreferNoHinting);
    QApplication::setFont(font);
    header = BenchProgram::Header(2, 3, 15, false);
    header.UnitInterval = 6;
    header.UnitXmax = 320;
    header.UnitYmax = 900;
    header.UnitYmin = -50;
    header.UnitRes = 0;
    header.UnitRef = 1;
    for (std::size_t input = 0; input < kInputs; ++input) {
      header.UnitColour[input + 1] = static_cast<std::int16_t>(input < 14 ? input + 1 : 2);
      header.UnitInputName[input + 1].Set("input " + std::to_string(input + 1));
    }
  }
  ~GraphPictures() override { QApplication::setFont(font_before); }

  // An oven that heats up; the inputs follow the reference in waves. Whole numbers only, so that
  // every machine gets the same words.
  static std::vector<std::int16_t> Oven(int rows) {
    std::vector<std::int16_t> words;
    for (int row = 0; row < rows; ++row) {
      const int reference = 400 + 15000 * row / (row + 120);
      words.push_back(static_cast<std::int16_t>(reference));
      for (int input = 2; input <= kInputs; ++input) {
        const int phase = (row + 7 * input) % 80;
        const int wave = (phase < 40 ? phase : 80 - phase) * 12 * input;
        words.push_back(static_cast<std::int16_t>(reference * (4 + input) / 20 + wave - 1500));
      }
    }
    return words;
  }

  static std::string Expected(const std::string& name) {
    return std::string(TAVREL_GRAPH_PICTURES) + "/" + name + ".png";
  }

  // With TAVREL_NEW_PICTURES set to a directory the picture is also written there.
  void ExpectPicture(const char* frame, const std::string& name) {
    const QImage picture = Find(frame)->grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QString directory = qEnvironmentVariable("TAVREL_NEW_PICTURES");
    if (!directory.isEmpty()) {
      EXPECT_TRUE(picture.save(directory + "/" + QString::fromStdString(name) + ".png"));
    }
    const QImage expected =
        QImage(QString::fromStdString(Expected(name))).convertToFormat(QImage::Format_RGB32);
    ASSERT_FALSE(expected.isNull()) << Expected(name);
    EXPECT_EQ(picture.size(), expected.size());
    EXPECT_TRUE(picture == expected) << name << " differs";
  }

  // Always the same size, whatever the type of the desktop is.
  void TakeSize() {
    for (const char* name : {"frCurve_0", "frCurve_1"}) {
      form->findChild<QWidget*>(name)->setFixedSize(640, 420);
    }
    form->adjustSize();
  }
  void RunPictures(std::function<void()> action) {
    Then("TavGraph", [this, action = std::move(action)] {
      TakeSize();
      ASSERT_TRUE(WaitUntil([] { return Find<PlotView>("PicC_0")->Fits(); }));
      ASSERT_TRUE(WaitForOverview());
      action();
      Key(Qt::Key_Escape);
    });
    Run(Oven(kRows));
  }
  void ShowPart(int mode) {
    Unit().UnitGraphMode = static_cast<std::int16_t>(mode);
    DragOn("PicC_0", {40, 100}, {200, 700});
    Click("cmdPart");
    ASSERT_TRUE(WaitForPart());
  }

  QFont font_before;
};

TEST_F(GraphPictures, HaveTheFontThatTheyAreMadeWith) {
  EXPECT_TRUE(QFontDatabase::families().contains("DejaVu Sans"));
}

TEST_F(GraphPictures, OfTheOverview) {
  RunPictures([this] { ExpectPicture("frCurve_0", "overview"); });
}

TEST_F(GraphPictures, OfThePartView) {
  RunPictures([this] {
    ShowPart(0);
    ExpectPicture("frCurve_1", "part_absolute");
  });
}

TEST_F(GraphPictures, OfTheDifferencesFromTheReference) {
  RunPictures([this] {
    ShowPart(1);
    ExpectPicture("frCurve_1", "part_relative");
  });
}

TEST_F(GraphPictures, OfTheReferenceBeneath) {
  RunPictures([this] {
    ShowPart(2);
    ExpectPicture("frCurve_1", "part_reference");
  });
}

// A recording that grows row by row while it is looked at gives the picture of the whole file.
class GrowingGraph : public GraphPictures {
 protected:
  struct Pictures {
    QImage over;
    QImage part;
  };

  Pictures TakePictures() {
    Pictures pictures;
    Press("cmdOver");
    pictures.over = PictureOf("PicC_0");
    Press("cmdPart");
    pictures.part = PictureOf("PicC_1");
    Press("cmdOver");
    return pictures;
  }
  // Of the two buttons that replace each other only one is there.
  void Press(const char* name) {
    if (IsShown(name)) {
      Click(name);
    }
    Settle();
  }
  void Settle() {
    graph.Timer_Graph_Timer();
    QApplication::processEvents();
  }
  void AppendRows(const std::vector<std::int16_t>& words, int from, int to) {
    for (int row = from; row < to; ++row) {
      const auto words_of_row =
          std::span(words).subspan(static_cast<std::size_t>(row) * kInputs, kInputs);
      ASSERT_TRUE(program.files.AppendRow(kSlot, words_of_row, 1));
      Settle();
    }
  }

  // The same recording grown from `first_rows` rows, with part view or overview in front, beside
  // the whole file.
  void ExpectSamePictures(int first_rows, bool is_part_in_front) {
    const std::vector<std::int16_t> words = Oven(kRows);
    Pictures grown;
    Pictures whole;
    Then("TavGraph", [&] {
      ASSERT_TRUE(WaitForOverview());
      Settle();
      if (is_part_in_front) {
        Press("cmdPart");
      }
      AppendRows(words, first_rows, kRows);
      grown = TakePictures();
      program.state.OverPrepared = false;
      program.state.PartPrepared = false;
      Settle();
      whole = TakePictures();
      Key(Qt::Key_Escape);
    });
    header.UnitView = {kCodeLeft + 2000, kCodeBottom + 3000, kCodeRight - 3000, 20000};
    Run({words.begin(), words.begin() + static_cast<std::ptrdiff_t>(first_rows) * kInputs});
    EXPECT_EQ(program.state.SampleCount[kSlot], kRows);
    EXPECT_FALSE(whole.over.isNull());
    EXPECT_TRUE(grown.over == whole.over);
    EXPECT_TRUE(grown.part == whole.part);
    EXPECT_FALSE(whole.over == whole.part);
  }
};

TEST_F(GrowingGraph, IsThePictureOfTheWholeFileInTheOverview) {
  ExpectSamePictures(20, false);
}

TEST_F(GrowingGraph, IsThePictureOfTheWholeFileInThePartView) {
  ExpectSamePictures(20, true);
}

TEST_F(GrowingGraph, IsThePictureOfTheWholeFileFromTheFirstRowOn) {
  ExpectSamePictures(0, false);
}

TEST_F(GrowingGraph, IsThePictureOfTheWholeFileFromBeforeThePartView) {
  ExpectSamePictures(0, true);
}

}  // namespace
}  // namespace tavrel

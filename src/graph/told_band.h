#ifndef TAVREL_GRAPH_TOLD_BAND_H_
#define TAVREL_GRAPH_TOLD_BAND_H_

#include <span>
#include <string>
#include <vector>

#include "base/colour.h"
#include "base/language.h"
#include "files/ledger.h"
#include "graph/view_frame.h"

// The band beneath the plot: where rows were fetched later, where values are filled in or in
// question, and where sets are missing. Pure rules; the form only paints the runs. The band goes
// with the rows of a view as the curves do, in each mode.
namespace tavrel {

// In the order in which they cover each other.
enum class BandKind { kLater, kFilled, kMissing };
inline constexpr int kBandKinds = 3;

// Told apart by their brightness, too, by whoever sees no colours and on a black printer.
[[nodiscard]] Colour BandColour(BandKind kind);

// The part of the band's height that a kind takes, from the plot downwards.
[[nodiscard]] double BandHeight(BandKind kind);

// Columns of dots of one kind, both of them; 0 is the left edge of the plot.
struct BandRun {
  BandKind What = BandKind::kLater;
  int First = 0;
  int Last = 0;

  [[nodiscard]] bool operator==(const BandRun&) const = default;
};

// A view in `Columns` columns of dots, of a file with `Channels` words to the row.
struct BandView {
  const ViewFrame& View;
  int Channels = 1;
  int Columns = 1;
};

// From left to right, none over another. Each place is at least three columns wide, so that one row
// among thousands is seen. The work grows with the number of places and with the columns, never
// with the product of both.
[[nodiscard]] std::vector<BandRun> BandRuns(std::span<const ToldRows> told, const BandView& in);

// Which rows a column stands for and why, a line for each place, the most important ones first;
// empty where the band is. At most five lines, the last of which says how many more there are.
[[nodiscard]] std::string BandTip(std::span<const ToldRows> told, const BandView& in, int column,
                                  Language language);

}  // namespace tavrel

#endif  // TAVREL_GRAPH_TOLD_BAND_H_

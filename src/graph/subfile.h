#ifndef TAVREL_GRAPH_SUBFILE_H_
#define TAVREL_GRAPH_SUBFILE_H_

#include <optional>
#include <string>

#include "graph/sample_reader.h"
#include "state/unit_record.h"

// A subfile: a recording file that holds only the rows of the part view, and of the inputs only
// the curves and the reference, so that the relative modes still work.
namespace tavrel {

// What is cut out of a recording. The rows are those of the records FirstRecord, one row further
// and so on up to and including LastRecord.
struct SubfileCut {
  int FirstRecord = 0;
  int LastRecord = 0;
  double Minutes = 0;      // width of the part view
  std::string SourceName;  // UTF-8
};

// True if a recorded input goes into the subfile.
[[nodiscard]] bool IsKept(const UnitRecord& source, int input);

// The header of the subfile: that of the source without the inputs that are not kept, its time
// beginning at 0 and its part range all of the X axis.
[[nodiscard]] UnitRecord SubfileHeader(const UnitRecord& source, const SubfileCut& cut);

// The whole subfile: `header` and the rows with the kept inputs. Empty if a word of them cannot be
// read.
[[nodiscard]] std::optional<std::string> SubfileBytes(const UnitRecord& source,
                                                      const UnitRecord& header,
                                                      const SubfileCut& cut, SampleReader& reader);

// `name` with "S" for its first letter; empty stays empty.
[[nodiscard]] std::string SubfileName(std::string name);

// True for a name that begins with "S" or "s".
[[nodiscard]] bool IsSubfileName(const std::string& name);

}  // namespace tavrel

#endif  // TAVREL_GRAPH_SUBFILE_H_

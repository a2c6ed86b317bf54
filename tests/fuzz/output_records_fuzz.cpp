#include "service/output_records.h"
#include "tests/fuzz/fuzz_input.h"

// The file of the outputs holds any bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  const std::string bytes = TextOf(data, size);
  const OutputRecordsText text = DecodeOutputRecords(bytes);
  Require(text.Records.size() <= kInets * kControllers, "one record for each controller at most");
  for (const OutputRecord& record : text.Records) {
    Require(IsInet(record.Inet) && IsController(record.Controller),
            "a record is for a controller that exists");
    Require(text.IsWhole || record.Before == 0, "a damaged text switches nothing on");
  }
  const OutputRecordsText again = DecodeOutputRecords(EncodeOutputRecords(text.Records));
  Require(again.IsWhole && again.Records == text.Records, "what is written is read as it was");
  return 0;
}

#include "link/register_access.h"

namespace tavrel {
namespace {

void SetArguments(Link& link, int inet, std::string_view letter, int index) {
  link.ComInet = static_cast<std::int16_t>(inet);
  link.ComLetter = letter;
  link.ComIndex = static_cast<std::int16_t>(index);
}

void SetPlace(Link& link, int inet, std::string_view address) {
  link.ComInet = static_cast<std::int16_t>(inet);
  link.ComLetter = address;
}

// kNone for a number that is no instrument's.
Reading Result(const Link& link) {
  return {link.ComStatus(link.ComInet), link.ComValue};
}

Reading Alone(Link& link, const Reading& reading) {
  return link.NoTrailingBytes() ? reading : Reading{link.ComResult, reading.word};
}

}  // namespace

Reading Read(Link& link, const Register& from) {
  SetArguments(link, from.inet, from.letter, from.index);
  link.ReadReg();
  const Reading reading = Result(link);
  link.Observed({from.inet, from.letter, from.index, reading.word, false, reading.status});
  return reading;
}

Reading Read(Link& link, const MemoryPlace& from) {
  SetPlace(link, from.inet, from.address);
  link.ReadMem();
  return Result(link);
}

Reading Read(Link& link, const PortPlace& from) {
  SetPlace(link, from.inet, from.address);
  link.ReadPort();
  return Result(link);
}

Reading ReadAlone(Link& link, const Register& from) {
  return Alone(link, Read(link, from));
}

Reading ReadAlone(Link& link, const PortPlace& from) {
  return Alone(link, Read(link, from));
}

LinkResult Write(Link& link, const Register& to, std::int16_t word) {
  SetArguments(link, to.inet, to.letter, to.index);
  link.ComValue = word;
  link.WriteReg();
  const LinkResult result = link.ComStatus(link.ComInet);
  link.Observed({to.inet, to.letter, to.index, word, true, result});
  return result;
}

LinkResult Write(Link& link, const MemoryPlace& to, std::int16_t word) {
  SetPlace(link, to.inet, to.address);
  link.ComValue = word;
  link.WriteMem();
  return link.ComStatus(link.ComInet);
}

LinkResult Write(Link& link, const PortPlace& to, std::int16_t word) {
  SetPlace(link, to.inet, to.address);
  link.ComValue = word;
  link.WritePort();
  return link.ComStatus(link.ComInet);
}

}  // namespace tavrel

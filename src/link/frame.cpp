#include "link/frame.h"

#include "base/number.h"
#include "link/registers.h"

namespace tavrel {
namespace {

char LowerCase(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string HexOf(int number) {
  return Hex(static_cast<std::int16_t>(number));
}

// "j" for variant 2, "k" for 3, "n" for 4.
char VariantLetter(int type_sel) {
  switch (type_sel) {
    case 2:
      return 'j';
    case 3:
      return 'k';
    default:
      return 'n';
  }
}

std::string NetworkPrefix(const LineMode& mode, char com_cmd, LineAddress address) {
  if (address.Inet == 0 && address.Snet == 0 && !mode.LinkPlugin) {
    return {com_cmd};
  }
  return "s" + HexOf(address.Inet) + static_cast<char>('a' + address.Snet) + LowerCase(com_cmd);
}

std::string RegisterAddress(const LineMode& mode, LineAddress address, RegisterName name) {
  if (mode.LinkDirect) {
    const bool numbered = mode.LinkPlugin && mode.TypeSel == 4;
    return std::string(name.Letter) + (numbered ? HexOf(address.Inet - 1) : "") + HexOf(name.Index);
  }
  const RegisterPlace place = RegisterPlaceOf(mode.TypeSel, name.Letter, name.Index);
  return LinkPrefix(mode, place.Bank, address) + HexOf(place.Address);
}

std::string SpaceAddress(const LineMode& mode, LineAddress address, Space space,
                         std::string_view place) {
  const char com_cmd = space == Space::kMemory ? 'M' : 'O';
  return (mode.LinkDirect ? "" : LinkPrefix(mode, com_cmd, address)) + std::string(place);
}

std::string ValueText(std::int16_t value) {
  return Hex(value) + kCarriageReturn;
}

}  // namespace

std::string LinkPrefix(const LineMode& mode, char com_cmd, LineAddress address) {
  if (mode.TypeSel == 1) {
    return NetworkPrefix(mode, com_cmd, address);
  }
  if (!mode.LinkPlugin) {
    return mode.LinkDirect ? std::string() : std::string{com_cmd};
  }
  const std::string digit = address.Inet >= 2 ? HexOf(address.Inet - 1) : "";
  return VariantLetter(mode.TypeSel) + digit + LowerCase(com_cmd);
}

std::string RegisterReadFrame(const LineMode& mode, LineAddress address, RegisterName name) {
  return RegisterAddress(mode, address, name) + "?";
}

std::string RegisterWriteFrame(const LineMode& mode, LineAddress address, RegisterName name,
                               std::int16_t value) {
  return RegisterAddress(mode, address, name) + "=" + ValueText(value);
}

std::string SpaceReadFrame(const LineMode& mode, LineAddress address, Space space,
                           std::string_view place) {
  const char direct_mark = space == Space::kMemory ? '<' : '@';
  return SpaceAddress(mode, address, space, place) + (mode.LinkDirect ? direct_mark : '?');
}

std::string SpaceWriteFrame(const LineMode& mode, LineAddress address, Space space,
                            std::string_view place, std::int16_t value) {
  const char direct_mark = space == Space::kMemory ? '>' : ':';
  return SpaceAddress(mode, address, space, place) + (mode.LinkDirect ? direct_mark : '=') +
         ValueText(value);
}

}  // namespace tavrel

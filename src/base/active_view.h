#ifndef TAVREL_BASE_ACTIVE_VIEW_H_
#define TAVREL_BASE_ACTIVE_VIEW_H_

namespace tavrel {

// The number of the screen in front. Each screen writes its number into RunState::ActiveView
// when it comes to the front and gives the old one back when it closes; the measuring cycle
// decides by it who may use the line.
enum class View : int {
  kNone = 0,
  kAllCopy = 65,
  kAllCom = 70,
  kAllDir = 105,
  kAllMem = 200,
  kAllMsg = 220,
  kTavNum = 240,
  kAllOpen = 245,
  kAllQs = 280,
  kAllRam = 290,
  kAllRegs = 310,
  kTavSett = 360,
  kAllTerm = 390,
  kMainSheet = 500,
  kTavWork = 505,
  kTavGraph = 510,
  kTavCoord = 515,
  kTavCtrl = 520,
  kTavPid = 525,
  kTavRec = 530,
  kTavWait = 540,
  kTavInst = 545,
  kTavProg = 555,
  kTavChann = 560,
  kTavColor = 565,
  kSpTavHs = 570,
  kAllWdog = 575,
  kTavKeys = 580,
};

}  // namespace tavrel

#endif  // TAVREL_BASE_ACTIVE_VIEW_H_

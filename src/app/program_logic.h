#ifndef TAVREL_APP_PROGRAM_LOGIC_H_
#define TAVREL_APP_PROGRAM_LOGIC_H_

#include "dialogs/choose_directory.h"
#include "dialogs/copy_files.h"
#include "dialogs/message_box_logic.h"
#include "dialogs/open_file.h"
#include "files/file_index.h"
#include "files/recording_engine.h"
#include "files/recording_file.h"
#include "graph/graph.h"
#include "graph/graph_output.h"
#include "link/link.h"
#include "main/attachment.h"
#include "main/keys_screen.h"
#include "main/main_commands.h"
#include "main/main_cycle.h"
#include "main/main_sheet.h"
#include "main/settings_dialog.h"
#include "main/simulation_question.h"
#include "main/start_up.h"
#include "platform/clipboard.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/printer.h"
#include "platform/regional.h"
#include "platform/screens.h"
#include "platform/serial_port.h"
#include "platform/shell.h"
#include "service/buffer_watch.h"
#include "service/communication_test.h"
#include "service/link_watch.h"
#include "service/memory_test.h"
#include "service/output_records.h"
#include "service/output_recovery.h"
#include "service/output_test.h"
#include "service/port_browser.h"
#include "service/quality_data.h"
#include "service/service_screen.h"
#include "service/terminal.h"
#include "service/variable_browser.h"
#include "service/watchdog_test.h"
#include "setup/channel_adjustment.h"
#include "setup/installation.h"
#include "setup/numbering.h"
#include "state/form_sizes.h"
#include "state/messages.h"
#include "state/run_state.h"
#include "state/settings_store.h"
#include "state/stepped_screen.h"
#include "work/colour_choice.h"
#include "work/controller_settings.h"
#include "work/coordinates.h"
#include "work/pid_parameters.h"
#include "work/program_editor.h"
#include "work/program_runner.h"
#include "work/recording_settings.h"
#include "work/unsure_registers.h"
#include "work/wait_bar.h"
#include "work/worksheet.h"

namespace tavrel {

// What the machine does for the program. All outlive the logic.
struct Machine {
  SerialPort& port;
  const Clock& clock;
  Dialogs& dialogs;
  Screens& screens;
  Events& events;
  Shell& shell;
  Printer& printer;
  Clipboard& clipboard;
  const Regional& regional;
  DirectoryLists::ListPlaces list_places = MountedPlaces;  // where the lists of directories begin
};

// The logic of the whole program, joined: one instance for the life of the process. The program
// joins it to its forms, a test to its doubles, a benchmark to the real machine.
struct ProgramLogic {
  explicit ProgramLogic(const Machine& on);
  ~ProgramLogic();
  ProgramLogic(const ProgramLogic&) = delete;
  ProgramLogic& operator=(const ProgramLogic&) = delete;

  // Behind the splash form: joins settings and line, and keeps for the sheet what an earlier end of
  // the program has left undone. False: the process ends.
  [[nodiscard]] bool LoadMainForm();

  // What a free tick of the cycle looks at besides the pump. True: it has used the line.
  [[nodiscard]] bool ReadBack() {
    return output_recovery.Step() || unsure.ReadBack() || buffers.Look();
  }

  Machine machine;
  RunState state;
  Link link{machine.port, machine.clock};
  Messages messages{machine.dialogs};
  SettingsStore settings{state};
  FormSizes form_sizes{state};
  RecordingFiles files{state, machine.clock, messages};
  RecordingEngine engine{
      {state, link, files, settings, messages, machine.dialogs, machine.screens, machine.clock}};
  ProgramRunner runner{{state, link, engine, machine.dialogs, machine.events, machine.clock}};
  UnsureRegisters unsure{{state, link, messages, machine.clock}};
  FileIndex index{{state, machine.events, machine.clock}};
  OpenFile open_file{
      {state, index, machine.dialogs, machine.screens, machine.events, machine.list_places}};
  CopyFiles copy_files{{state, open_file, files.Journals(), machine.dialogs, machine.events,
                        machine.clock, machine.list_places}};
  DirectoryChoice directory{state, machine.screens, machine.list_places};
  MessageBoxLogic message{state, machine.screens};
  RecordingSettings recording_settings{
      {state, files, settings, messages, machine.dialogs, machine.screens}};
  Coordinates coordinates{state, machine.dialogs, machine.screens};
  ColourChoice colours{state, machine.screens};
  ControllerSettings controller_settings{{state, link, machine.dialogs, machine.screens, unsure}};
  PidParameters pid_parameters{
      {state, link, machine.dialogs, machine.screens, unsure, engine.Orders()}};
  ChannelAdjustment channels{{state, link, machine.dialogs, machine.events, machine.clock}};
  ProgramEditor program_editor{{state, machine.dialogs}};
  WaitBar wait_bar{state, machine.events, machine.clock};
  Worksheet worksheet{{state, link, engine, runner, recording_settings, files.Journals(),
                       coordinates, colours, machine.dialogs, machine.screens, machine.events,
                       machine.clock}};
  Graph graph{{state, files, machine.dialogs, machine.events, machine.shell}};
  GraphOutput graph_output{{state, graph, files.Journals(), machine.dialogs, machine.events,
                            machine.printer, machine.clipboard, machine.regional, machine.clock,
                            machine.shell}};
  MainSheet sheet{{state, link, machine.clock, machine.screens, machine.events, files, engine}};
  Attachment attachment{{state, files, engine, settings, sheet, messages}};
  Installation installation{
      {{state, files, engine, settings, messages, [this](int slot) { sheet.HideRow(slot); },
        [this](int slot) { attachment.ShowSlot(slot); }},
       machine.dialogs,
       machine.events,
       [this](int slot) { return sheet.IsControllerOn(slot); }}};
  Numbering numbering{{state, link, engine, machine.dialogs, machine.clock,
                       [this](int from, int to) { output_recovery.Renumber(from, to); }}};
  LinkWatch link_watch;
  BufferWatch buffers{state, link, engine, machine.clock};
  ServiceParts service{state,           link,
                       link_watch,      engine,
                       machine.dialogs, machine.events,
                       machine.clock,   [this](int slot) { return sheet.IsControllerOn(slot); },
                       buffers};
  VariableBrowser variable_browser{service};
  PortBrowser port_browser{service};
  OutputRecords output_records{state, messages};
  OutputTest output_test{service, output_records};
  OutputRecovery output_recovery{
      {state, link, engine.Orders(), output_records, machine.dialogs, machine.clock}};
  Terminal terminal{service};
  CommunicationTest communication_test{service};
  MemoryTest memory_test{service};
  WatchdogTest watchdog_test{service};
  QualityData quality_data{service, machine.regional};
  SimulationQuestion simulation{state, link, machine.dialogs};
  SteppedScreens stepped;
  MainCycle cycle{{state, link, engine, sheet, attachment, simulation, messages, machine.events,
                   stepped, machine.clock}};
  MainCommands commands{{state, link, files, engine, settings, sheet, cycle, messages,
                         machine.dialogs, machine.screens, machine.events, machine.shell,
                         machine.clock}};
  SettingsDialog settings_dialog{
      {state, link, settings, commands, directory, machine.dialogs, machine.shell}};
  KeysScreen keys{state};
  StartUp start_up{{state, link, files, engine, settings, attachment, sheet, cycle, commands,
                    messages, machine.dialogs, machine.screens, machine.events, machine.clock}};
};

}  // namespace tavrel

#endif  // TAVREL_APP_PROGRAM_LOGIC_H_

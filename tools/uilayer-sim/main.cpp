// uilayer-sim: replays a camera session against the library, or checks a
// hardware configuration file against what the library reads. The
// subcommands, their options and their help are the table below.
#include <cstdint>
#include <string>
#include <vector>

#include "core/Cli.h"
#include "core/Commands.h"

namespace {

using UilayerSim::Subcommand;

constexpr const char* kAbout =
    "Replays camera sessions against the library and prints every decision by name,\n"
    "or checks hardware configuration files against what the library reads.\n"
    "\n"
    "exit status:\n"
    "  0  replay done, configuration clean, help or list shown\n"
    "  1  lint: there are findings; explain: the capability is not set;\n"
    "     whatif, diff: a decision differs; sweep: a result --fail-on names\n"
    "  2  bad command line, unreadable file, or a mistake in the scenario\n"
    "  3  the device could not be set up; whatif, diff: a replay aborted in the library\n"
    "  4  replay: the library aborted the process in a session; the others reported";

const std::vector<Subcommand>& Commands() {
    static const std::vector<Subcommand> commands = {
        {"replay",
         "SCENARIO",
         "replay a scenario (the default: uilayer-sim SCENARIO)",
         "Replays the sessions of the scenario file (YAML) against the library and prints\n"
         "the report on standard output: text, or JSON with --json. Mistakes in the\n"
         "scenario are reported as FILE:LINE: FIELD: reason (up to 20) and nothing is\n"
         "replayed; doubtful values and streams that get no role are warnings on\n"
         "standard error.\n"
         "'uilayer-sim SCENARIO' is short for 'uilayer-sim replay SCENARIO'.\n"
         "\n"
         "exit status: 0 done, 2 bad command line, unreadable file or scenario mistake,\n"
         "3 device set-up failed, 4 the library aborted the process in a session: that\n"
         "session's report ends with the call that aborted, the others report as usual.",
         {{"--json", nullptr, "write the report as JSON (see docs/report.schema.json)"},
          {"--log", nullptr, "show the library's log lines under each call"},
          {"--no-lint", nullptr, "do not check the configuration before the replay"}},
         1,
         1,
         UilayerSim::RunReplayCommand},
        {"explain",
         "SCENARIO CAP",
         "say why a capability is or is not set in a replayed session",
         "Replays the scenario and explains capability CAP (a name, either name of bit\n"
         "81, or a bit number 0..99) on a camera of one session: on which cameras it is\n"
         "set, the configuration step that set it or cleared it last with that step's\n"
         "log lines, the rules behind the bit with the values of their inputs, and the\n"
         "changes that set it (a clear bit) or clear it (a set bit): each input the\n"
         "library read is changed in turn (configuration keys and rows, properties,\n"
         "session parameters, the operation mode, streams, files) and the session\n"
         "configured again; a change is listed only when its own rerun flipped the bit.\n"
         "When no single change sets it, pairs are tried, within a bound. With --frame\n"
         "it explains the request caps of that frame: the buffers, sensor mode list\n"
         "values, settings and warm start rule that added or removed the bit, and the\n"
         "changes of the request, its last result and the session that flip it.\n"
         "\n"
         "exit status: 0 set, 1 not set, 2 bad command line, unknown CAP, session,\n"
         "camera or frame, unreadable file or scenario mistake, 3 device set-up failed,\n"
         "4 the library aborted the process in that session.",
         {{"--session", "N", "the session's name or 1-based position (default: the last)"},
          {"--camera", "logical|K", "the logical camera (default) or physical camera K"},
          {"--frame", "F", "explain the request caps of frame F"},
          {"--json", nullptr,
           "write the explanation as one JSON object (docs/explain.schema.json)"},
          {"--no-lint", nullptr, "do not check the configuration before the replay"}},
         2,
         2,
         UilayerSim::RunExplainCommand},
        {"lint",
         "CONFIG...",
         "check hardware configuration files",
         "Checks each configuration file against what the library reads and prints one\n"
         "finding per line as FILE:LINE: [GROUP] KEY: reason, with the paths as given.\n"
         "With --device, also the sensor names, camera ids and camera masks that no\n"
         "camera of that device has ('-' reads a file from standard input).\n"
         "A run of more than four findings of one kind shows the first three, then\n"
         "FILE:LINE: ... and N more like it.\n"
         "\n"
         "exit status: 0 clean, 1 findings, 2 bad command line or unreadable file.",
         {{"--format", "text|json",
           "text (the default), or json: an array of objects\n"
           "                        {file, line, group, key, rule, message}, one a line"},
          {"--json", nullptr, "the same as --format json"},
          {"--device", "DEVICE",
           "a device description or scenario: sensor names, camera ids\n"
           "                        and camera masks no camera of it has are findings"}},
         1,
         SIZE_MAX,
         UilayerSim::RunLintCommand},
        {"names",
         "caps|tags|formats|roles",
         "list the names a scenario may use",
         "Lists the capability, tag, pixel format or stream role names a scenario may\n"
         "use, one per line: the number (bit, format or role value), a tab, the name.\n"
         "Tags are the standard tags (id in hexadecimal) and the vendor tags the library\n"
         "uses ('vendor INDEX'), each with a third column, its element type.\n"
         "\n"
         "exit status: 0 listed, 2 bad command line.",
         {{"--json", nullptr, "a JSON array of {id, name}, with vendor and type for tags"}},
         1,
         1,
         UilayerSim::RunNamesCommand},
        {"sweep",
         "DEVICE",
         "configure every guaranteed stream combination against a device",
         "Configures each stream combination the framework guarantees for the hardware\n"
         "level (and, when asked, RAW, 10-bit and use-case combinations) against the\n"
         "device description or scenario DEVICE, each in a child process, and prints one\n"
         "row per combination (return codes, roles, caps, sensor mode, pipeline) and a\n"
         "summary of the combinations that failed, aborted or left a stream in no role.\n"
         "\n"
         "With --operation-mode CONSTRAINED_HIGH_SPEED it configures the high-speed\n"
         "combinations instead: a preview, alone or with one video stream of its size,\n"
         "with an fps range of 120 or more.\n"
         "\n"
         "exit status: 0 done, 1 a combination came to a result --fail-on names,\n"
         "2 bad command line, unreadable file or device mistake, 3 device set-up failed.",
         {{"--config", "FILE", "the hardware configuration (default: the device's)"},
          {"--camera", "ID", "the camera to configure (default: the first)"},
          {"--operation-mode", "M", "the operation mode, a number or a name (default 0)"},
          {"--level", "legacy|limited|full|3", "the hardware level (default full)"},
          {"--raw", nullptr, "add the RAW combinations"},
          {"--ten-bit", nullptr, "add the 10-bit dynamic range combinations"},
          {"--use-cases", nullptr, "add the stream use case combinations"},
          {"--fps", "MIN,MAX", "the session's AE target fps range (high speed: 120,120)"},
          {"--package", "NAME", "the client package (default: none, a third-party client)"},
          {"--system-camera", nullptr, "the client is the configuration's system camera"},
          {"--param", "TAG=VALUE",
           "a session parameter, TAG a standard tag name or vendor:N,\n"
           "                        VALUE its values (\"60,60\", \"video_mode\"); may be repeated"},
          {"--fail-on", "aborted,unclassified,failed,crashed",
           "exit 1 when a combination came to one of these"},
          {"--json", nullptr, "write the report as JSON (see docs/sweep.schema.json)"}},
         1,
         1,
         UilayerSim::RunSweepCommand},
        {"whatif",
         "SCENARIO",
         "replay a scenario with configuration keys or properties changed",
         "Replays the scenario as it is and with the changes, and prints each decision\n"
         "that differs, per session: caps (as +added, -removed), stream roles, pipeline,\n"
         "sensor mode, tuning answers and request caps. A key the library never reads\n"
         "is a warning; a value the store cannot read as the key's values is refused.\n"
         "\n"
         "exit status: 0 no decision differs, 1 some differ, 2 bad command line,\n"
         "unreadable file, scenario mistake or refused value, 3 device set-up failed or\n"
         "a replay aborted in the library.",
         {{"--set", "Group/Key=VALUE|PROPERTY=VALUE",
           "set a configuration key (values as the file writes\n"
           "                        them) or a system property; may be repeated"},
          {"--unset", "Group/Key|PROPERTY", "remove a configuration key or a property"},
          {"--config", "FILE", "the hardware configuration (default: the scenario's)"},
          {"--json", nullptr, "write the differences as one JSON object"}},
         1,
         1,
         UilayerSim::RunWhatIfCommand},
        {"diff",
         "OLD.conf NEW.conf SCENARIO... | OLD.yaml NEW.yaml",
         "list the decisions a configuration change changes",
         "Replays each scenario with configuration OLD and with configuration NEW (or\n"
         "replays the two scenarios) and prints the configuration differences (keys\n"
         "added, removed or changed, with their lines in OLD and NEW), then each decision\n"
         "that changed, per scenario and session. Each change names its causes: the\n"
         "fewest differences that reproduce it when applied to OLD, found by replaying\n"
         "OLD with each difference alone, then by delta debugging over the differences\n"
         "(with a bound on the replays, and a word when it stops early).\n"
         "\n"
         "exit status: 0 no decision changed, 1 some changed, 2 bad command line,\n"
         "unreadable file, scenario mistake or a configuration the store refuses,\n"
         "3 device set-up failed or a replay aborted in the library.",
         {{"--json", nullptr, "write the changes as one JSON object (see docs/diff.schema.json)"}},
         2,
         SIZE_MAX,
         UilayerSim::RunDiffCommand},
    };
    return commands;
}

}  // namespace

int main(int argc, char** argv) {
    const UilayerSim::Program program = {UILAYER_SIM_VERSION, kAbout, Commands()};
    return UilayerSim::RunCommandLine(program, std::vector<std::string>(argv + 1, argv + argc));
}

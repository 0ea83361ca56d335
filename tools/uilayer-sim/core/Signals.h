// What uilayer-sim does when it is interrupted or the library aborts: the
// temporary device root goes in every case, and the library's log lines
// captured before an abort still reach the user.
#ifndef UILAYER_SIM_SIGNALS_H
#define UILAYER_SIM_SIGNALS_H

#include <string>

namespace UilayerSim {

// The directory that SIGINT and SIGTERM remove, with everything in it, before
// the process dies of the signal; "" for none. Paths longer than PATH_MAX are
// not registered.
void RegisterCleanupPath(const std::string& path);

// Installs the SIGINT and SIGTERM handlers.
void InstallInterruptHandlers();

// Makes SIGABRT write the library's log lines not yet reported to standard
// error ("uilayer-sim: log: LINE"), then go on to the abort handler installed
// before this call.
void InstallAbortLogWriter();

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SIGNALS_H

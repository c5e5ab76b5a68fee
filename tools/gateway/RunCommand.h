// A command that lives no longer than the box.

#ifndef TOOLS_GATEWAY_RUNCOMMAND_H_
#define TOOLS_GATEWAY_RUNCOMMAND_H_

#include <string>

// Runs a shell's command line and returns its exit status, or 128 and the signal that killed it.
// `signals` is a signalfd of blocked signals, SIGCHLD among them: any other is handed on as
// SIGTERM. The command has no signal blocked, and gets SIGTERM when the calling thread ends.
int RunCommand(const std::string& command, int signals);

#endif  // TOOLS_GATEWAY_RUNCOMMAND_H_

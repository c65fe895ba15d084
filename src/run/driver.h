// The whole run, from the command line to the final table.
#pragma once

namespace lintara {

/// Runs the program: reads the options, loads the store, makes the output tree and the per-thread streams, starts the
/// workers and waits for them, prints the final table and frees everything.
///
/// A run in which no gap at all was filled ends by SIGFPE behind the last progress message, with all outputs complete.
///
/// @return exit status 0. Bad input ends the process: -1 (arguments, input files), 1 (help, outputs that cannot be
///         opened or written) or 2 (a sub-directory that cannot be created, also because it exists)
int Run(int argc, char** argv);

}  // namespace lintara

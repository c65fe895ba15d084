// The command line: the help text and the parser that turns arguments into the run-wide settings.
#pragma once

namespace lintara {

/// Prints the help text to the standard output, with the settings at their present values, and ends the process with
/// exit status 1.
[[noreturn]] void usage();

/// Parses the arguments from rgv[1] on into the settings. Only the second character of an option counts, so "-abc 7" is
/// "-a 7"; values go through atoi or atof without a range check. An unknown option, or "-" alone, calls usage(); an
/// option without its value ends the process by abort().
///
/// @return index of the first argument that was not consumed: rgc, or that of a word that does not begin with '-'
int mGetOptions(int rgc, char** rgv);

/// Writes value in decimal, zero-terminated, into buf, which must hold 12 characters.
void itostr(char* buf, int value);

}  // namespace lintara

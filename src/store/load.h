// Loads the two input files into the store in four passes: a count of the reads of every gap, a count of the contigs of
// every scaffold, the reads, and the contig sequences. The counts come first so that every array has its final size
// when it is allocated. The pass over the reads can be put off to the time when each gap is treated, see gap_reads.h.
// All messages go to the error stream, and a fatal one ends the process at once, status -1.
//
// What the files say is taken as correct, with these consequences that users meet: an id that the contig file does not
// know is an alias of the scaffold at index 0, scaffold id 0 has no place of its own in the store and is written over
// the scaffold at index 0, and a contig of a single base becomes the first base of the next contig. A record that
// points outside the store ends the run with a line that names file, line and value.
#pragma once

#include <map>
#include <set>
#include <string>

#include "store/gap.h"

namespace lintara {

/// Loads the reads: runs Loadgapnum() and Loadcontignum(), then stores every read at its gap. The program does not call
/// it: LoadGapPlaces() loads the reads that cannot stay in their file in the same way, and the tests hold it against
/// this plain form.
///
/// On return the store is allocated and holds the reads, without contig sequences. When either file holds no record,
/// a message says so and no read is loaded; that is no error here.
///
/// @param file1      gap file, plain or gzip-compressed: two lines a read, ">ID LENGTH POSITION SCAFFOLD CONTIG" and
///                   the bases
/// @param file2      contig file, see Loadcontigfile()
/// @param scaffolds  out: array of the scaffolds, owned by the caller
/// @param scafid     out: scaffold id to index in scaffolds
void Loadgapfile(std::string& file1, std::string& file2, Scaf*& scaffolds, std::map<int, int>& scafid);

/// Loadgapfile(), but that leaves the reads in the gap file, if they can be fetched from it gap by gap; see GapReads.
/// All else is as there, messages and ends of the process included, so that every fault of the files shows here.
///
/// They can when the file is a regular one, compressed or not, in which every record has the plain shape and a sequence
/// of two characters or more, when the records of a gap follow each other, and when every gap has a place in the store
/// that no other gap has.
void LoadGapPlaces(std::string& file1, std::string& file2, Scaf*& scaffolds, std::map<int, int>& scafid);

/// Fills contigs and front_gap_lens of all scaffolds. Bases keep their case; a carriage return stays in.
///
/// @param file  contig file, plain FASTA with headers ">scaffoldS_C", a tab, and the length of the gap in front
void Loadcontigfile(std::string& file, Scaf*& scaffolds, std::map<int, int>& scafid);

/// Counts the reads of every gap: gap id to number of records in the gap file. The program does not call it:
/// LoadGapPlaces() notes the places as it counts.
void Loadgapnum(std::string& file, std::map<int, int>& gapreadsum);

/// Counts the contigs of every scaffold, allocates the scaffolds with their arrays, and fills scafid in ascending id.
void Loadcontignum(std::string& file, Scaf*& scaffolds, std::map<int, int>& scafid);

/// Frees all that a scaffold owns and leaves it empty, so that a second call is harmless.
void scaffold_delete(Scaf& scaffold);

/// Drops the last character if it is neither a base nor N; at most this one goes. The program does not call it.
void chomp_read(std::string& str);
/// The same for a zero-terminated string; null and the empty string are left alone. The program does not call it.
void chomp_read(char* str);

/// Zeroes size entries.
void Initial(int*& array, int size);
/// Sets each of size entries to 100 times N.
void Initial(std::string*& array, int size);

/// The largest element, or 0 if the set is empty or holds only negative numbers. The program does not call it.
int findsetmax(const std::set<int>& pos);

}  // namespace lintara

// What the tests of lintara-kit share: a folder that goes away with the test, runs of the executable, made-up genomes
// and read pairs, and mappings written by hand.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "kit/base/fasta.h"
#include "kit/base/file.h"

namespace lintara::kit::test {

inline bool Installed(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null").c_str()) == 0;
}

/// Bases without long repeats, the same for the same seed on every machine.
inline std::string RandomBases(size_t length, unsigned seed) {
    std::mt19937 random(seed);
    std::string text(length, 'A');
    for (char& base : text) base = "ACGT"[random() % 4];
    return text;
}

/// Read pairs without errors at every `step` bases of `genome`, fragments of `fragment` bases give or take `spread`.
/// Fragments for which `keep` is false are left out.
template <typename Keep>
void WritePairs(const std::string& genome, const std::string& file1, const std::string& file2, long length,
                long fragment, long spread, long step, Keep keep) {
    std::ofstream one(file1);
    std::ofstream two(file2);
    std::mt19937 random(7);
    long number = 0;
    for (long start = 0; start + fragment + spread <= static_cast<long>(genome.size()); start += step) {
        long size = fragment - spread + static_cast<long>(random() % static_cast<unsigned>(2 * spread + 1));
        if (!keep(start, start + size)) continue;
        std::string text = genome.substr(static_cast<size_t>(start), static_cast<size_t>(size));
        std::string left = text.substr(0, static_cast<size_t>(length));
        std::string right = ReverseComplement(text.substr(text.size() - static_cast<size_t>(length)));
        if (++number % 2 == 0) left.swap(right);
        std::string quality(static_cast<size_t>(length), 'I');
        one << "@p" << number << "/1\n" << left << "\n+\n" << quality << "\n";
        two << "@p" << number << "/2\n" << right << "\n+\n" << quality << "\n";
    }
}

class KitTest : public testing::Test {
  protected:
    KitTest() {
        char name[] = "/tmp/lintara-kit-XXXXXX";
        folder_ = mkdtemp(name);
    }
    ~KitTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    std::string Path(const std::string& name) const { return folder_ + "/" + name; }
    std::string Put(const std::string& name, const std::string& text) const {
        std::ofstream(Path(name), std::ios::binary) << text;
        return Path(name);
    }
    /// An executable shell script.
    std::string Script(const std::string& name, const std::string& text) const {
        Put(name, "#!/bin/sh\n" + text);
        std::filesystem::permissions(Path(name), std::filesystem::perms::owner_all);
        return Path(name);
    }
    std::string Get(const std::string& name) const { return ReadWhole(Path(name)); }
    bool Exists(const std::string& name) const { return std::filesystem::exists(Path(name)); }
    /// Lines of a plain or gzip-compressed file.
    std::vector<std::string> Lines(const std::string& name) const {
        std::vector<std::string> lines;
        LineReader reader(Path(name));
        for (std::string line; reader.Next(line);) lines.push_back(line);
        return lines;
    }

    /// Exit status of a shell command; 128 and more: the signal that ended it.
    static int Shell(const std::string& command) {
        int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    /// Runs lintara-kit; what it says is in the files "out" and "err". `before` stands in front of the command.
    int Kit(const std::string& arguments, const std::string& before = "") const {
        return Shell(before + " " + LINTARA_KIT_BINARY + " " + arguments + " >" + Path("out") + " 2>" + Path("err"));
    }
    std::string Err() const { return Get("err"); }

    std::string folder_;
};

/// Runs of `fill` on a genome of 2,600 bases: a gap of 60 bases that the reads close, and one of 90 whose middle no
/// read covers, so that it takes several rounds and stays open. Needs bwa.
class FillTest : public KitTest {
  protected:
    void SetUp() override {
        if (!Installed("bwa")) GTEST_SKIP() << "bwa is not installed";
        genome_ = RandomBases(2600, 42);
        scaffold_ = genome_;
        std::fill(scaffold_.begin() + 800, scaffold_.begin() + 860, 'N');
        std::fill(scaffold_.begin() + 1700, scaffold_.begin() + 1790, 'N');
        Put("scaffolds.fa", ">alpha some words\n" + scaffold_ + "\n");
        WritePairs(genome_, Path("1.fq"), Path("2.fq"), 100, 350, 30, 4, [](long start, long end) {
            auto covers = [](long from) { return from < 1750 && from + 100 > 1740; };
            return !covers(start) && !covers(end - 100);
        });
    }
    std::string FillWords(const std::string& out, const std::string& more = "") const {
        return "fill -s " + Path("scaffolds.fa") + " -1 " + Path("1.fq") + " -2 " + Path("2.fq") + " -o " + Path(out) +
               " " + more;
    }
    int Fill(const std::string& out, const std::string& more = "", const std::string& before = "") const {
        return Kit(FillWords(out, more), before);
    }
    /// Names of the files in a folder, but for run.json.
    std::vector<std::string> Files(const std::string& folder) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Path(folder))) {
            if (entry.path().filename() != "run.json") names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    /// Both folders hold the same files with the same bytes. Their last path components must be equal, since the report
    /// bears that as its title.
    void ExpectSame(const std::string& one, const std::string& other) const {
        ASSERT_EQ(Files(one), Files(other));
        for (const std::string& name : Files(one)) {
            if (std::filesystem::is_directory(Path(one + "/" + name))) continue;
            EXPECT_TRUE(Get(one + "/" + name) == Get(other + "/" + name)) << name << " differs";
        }
        EXPECT_TRUE(Exists(other + "/run.json"));
    }
    /// What bears its final name is whole, whatever befell the run.
    void ExpectNoHalfFile(const std::string& out) const {
        if (!Exists(out)) return;
        for (const std::string& name : Files(out)) {
            if (name == "work" || name.ends_with(".tmp")) continue;
            std::string text = name.ends_with(".gz") ? "" : Get(out + "/" + name);
            std::string last = text.substr(text.rfind('\n', text.size() - std::min<size_t>(text.size(), 2)) + 1);
            std::string whole;
            if (name == "filled.fa") whole = ">alpha some words";
            if (name == "filled.fa" && ReadFasta(Path(out + "/" + name))[0].sequence.size() > 2540) whole = last;
            if (name == "filled.fa.fai" && SplitTabs(text).size() == 5) whole = last;
            if (name == "filled.agp" && last.ends_with("\t2600\t+\n")) whole = last;
            if (name == "fills.fa" || name == "filled.bed") whole = last.ends_with('\n') ? last : "-";
            if (name == "gaps.tsv" && last.starts_with("2\talpha\t1700\t1790\t90\t")) whole = last;
            if (name == "columns.tsv.gz" && Lines(out + "/" + name).size() > 10) whole = last;
            if (name == "report.html" && last == "</html>\n") whole = last;
            if (name == "lintara_mqc.json" && last == "}\n") whole = last;
            EXPECT_EQ(whole, last) << name << " is not whole";
        }
        EXPECT_TRUE(!Exists(out + "/run.json") || Get(out + "/run.json").ends_with("\n}\n"));
    }
    /// Rows of gaps.tsv, one field each.
    std::vector<std::string> Column(const std::string& out, const std::string& name) const {
        std::vector<std::string> lines = Lines(out + "/gaps.tsv");
        std::vector<std::string> head = SplitTabs(lines.at(0));
        size_t at = static_cast<size_t>(std::find(head.begin(), head.end(), name) - head.begin());
        std::vector<std::string> values;
        for (size_t i = 1; i < lines.size(); ++i) values.push_back(SplitTabs(lines[i]).at(at));
        return values;
    }

    std::string genome_;
    std::string scaffold_;
};

/// Where a read lies. Positions are 0-based.
struct End {
    long start = -1;  ///< -1: not mapped
    bool reverse = false;
    int quality = 60;
    std::string cigar = "100M";
    std::string bases = std::string(100, 'A');
    std::string target = "s";
};

/// A mapping in SAM, record by record.
class Sam {
  public:
    explicit Sam(const std::string& head) : head_(head) {}

    void Line(const std::string& record) { records_.push_back(record); }

    void Record(const std::string& name, int flag, const End& own, const End& mate, long size,
                const std::string& tags = "") {
        // A read that is not mapped stands at the place of its mate.
        const End& place = own.start < 0 ? mate : own;
        const End& other = mate.start < 0 ? own : mate;
        bool paired = (flag & 1) != 0;
        std::string line = name + "\t" + std::to_string(flag) + "\t";
        line += place.start < 0 ? "*\t0" : place.target + "\t" + std::to_string(place.start + 1);
        line += "\t" + std::to_string(own.start < 0 ? 0 : own.quality) + "\t" + (own.start < 0 ? "*" : own.cigar);
        if (!paired || other.start < 0) {
            line += "\t*\t0\t0";
        } else {
            line += "\t" + (other.target == place.target ? "=" : other.target) + "\t" +
                    std::to_string(other.start + 1) + "\t" + std::to_string(size);
        }
        Line(line + "\t" + own.bases + "\t*" + tags);
    }

    static int Flags(const End& own, const End& mate, int which, bool proper) {
        int flag = 1 | (which == 1 ? 0x40 : 0x80) | (proper ? 2 : 0);
        if (own.start < 0) flag |= 4;
        if (mate.start < 0) flag |= 8;
        if (own.start >= 0 && own.reverse) flag |= 0x10;
        if (mate.start >= 0 && mate.reverse) flag |= 0x20;
        return flag;
    }

    /// Both reads of a pair; `size` is the length of the fragment, told of the left read, which is `first`.
    void Pair(const std::string& name, const End& first, const End& second, bool proper, long size = 0,
              const std::string& tags = "") {
        Record(name, Flags(first, second, 1, proper), first, second, size, tags);
        Record(name, Flags(second, first, 2, proper), second, first, -size, tags);
    }

    std::vector<std::string>& Records() { return records_; }
    std::string Text() const {
        std::string text = head_;
        for (const std::string& record : records_) text += record + "\n";
        return text;
    }

  private:
    std::string head_;
    std::vector<std::string> records_;
};

}  // namespace lintara::kit::test

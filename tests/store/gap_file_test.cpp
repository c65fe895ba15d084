#include "store/gap_file.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "stream_gap_file.h"

namespace lintara {
namespace {

class GapFileTest : public ::testing::Test {
  protected:
    void SetUp() override {
        const bool memory = std::filesystem::is_directory("/dev/shm");
        const std::filesystem::path base = memory ? "/dev/shm" : std::filesystem::temp_directory_path();
        std::string pattern = (base / "lintara-gap-file-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        directory_ = pattern;
        path_ = directory_ + "/gap.fa";
    }
    void TearDown() override { std::filesystem::remove_all(directory_); }

    void Write(const std::string& text) const { std::ofstream(path_, std::ios::binary) << text; }

    void WriteCompressed(const std::string& text) const {
        gzFile file = gzopen(path_.c_str(), "wb1");
        gzwrite(file, text.data(), static_cast<unsigned>(text.size()));
        gzclose(file);
    }

    std::string Bytes() const {
        std::ifstream in(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    /// All records as text, one line each, and at which line the reading ended.
    template <class File>
    std::string Records() const {
        File file(path_);
        std::ostringstream text;
        GapHeader header;
        while (file.ReadHeader(header)) {
            text << header.marked << ' ' << header.gap << ' ' << header.length << ' ' << header.position << ' '
                 << header.scaffold << ' ' << header.contig << " line " << file.HeaderLine();
            text << " [" << file.ReadSequence() << "]\n";
        }
        text << "ends at " << file.HeaderLine() << '\n';
        return text.str();
    }

    ::testing::AssertionResult SameAsStream() const {
        const std::string wanted = Records<testing::StreamGapFile>();
        const std::string got = Records<GapFile>();
        if (got == wanted) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "wanted:\n" << wanted << "got:\n" << got << "from:\n" << Bytes();
    }

    std::string directory_;
    std::string path_;
};

class Generator {
  public:
    explicit Generator(unsigned seed) : random_(seed) {}

    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    bool OneIn(int n) { return Below(n) == 0; }

    std::string Bases(int size) {
        std::string bases;
        for (int i = 0; i < size; ++i) bases += "ACGTN"[Below(OneIn(50) ? 5 : 4)];
        return bases;
    }

    std::string Plain() {
        std::string record = ">" + std::to_string(Below(1000)) + "\t" + std::to_string(Below(5000)) + "\t" +
                             std::to_string(Below(2000) - 200) + "\t" + std::to_string(Below(100)) + "\t" +
                             std::to_string(Below(50));
        return record + "\n" + Bases(Below(120)) + "\n";
    }

    /// A record of fields that are odd one time in `odds`.
    std::string Odd(int odds) {
        std::string record = OneIn(odds) ? Space() : "";
        record += OneIn(odds) ? Pick({"", "x", ">>", "> ", ">+", ">-", ">\v"}) : ">";
        record += OneIn(odds) ? Number() : std::to_string(Below(1000));
        for (int field = 0; field < 4; ++field) {
            if (OneIn(odds * 2)) continue;
            record += OneIn(odds) ? Space() : "\t";
            record += OneIn(odds) ? Number() : std::to_string(Below(3000) - (field == 1 ? 100 : 0));
        }
        if (OneIn(odds))
            record += Pick({" rest of the line", "\r", "x", "\t", " ", "-3", ".5", "e4", ",000", "\t7\t8"});
        record += OneIn(odds * 2) ? Space() : "\n";
        record += OneIn(odds) ? Pick({"", "A", "\r", "ACGT\r", " ACGT", "ACGT ", ">1\t2\t3\t4\t5"}) : Bases(Below(120));
        return record + (OneIn(odds * 4) ? "" : "\n");
    }

    /// Replaces, doubles or removes a few bytes.
    void Mutate(std::string& text) {
        const std::string bytes = "0123456789>+- \t\r\n\v\fxeE.,ACGT";
        for (int changes = Below(4); changes > 0 && !text.empty(); --changes) {
            const std::size_t at = random_() % text.size();
            const char byte = OneIn(3) ? static_cast<char>(random_() % 256) : bytes[random_() % bytes.size()];
            switch (Below(4)) {
                case 0:
                    text.erase(at, static_cast<std::size_t>(1 + Below(3)));
                    break;
                case 1:
                    text.insert(at, static_cast<std::size_t>(1 + Below(12)), byte);
                    break;
                case 2:
                    text.insert(at, text, at / 2, 5);
                    break;
                default:
                    text[at] = byte;
            }
        }
    }

    std::string Space() {
        std::string space;
        for (int i = 1 + Below(4); i > 0; --i) space += " \t\n\r\v\f "[Below(7)];
        return space;
    }

    std::string Number() {
        return Pick({"2147483647",
                     "2147483648",
                     "-2147483648",
                     "-2147483649",
                     "4294967295",
                     "4294967296",
                     "-4294967295",
                     "-4294967296",
                     "9223372036854775807",
                     "9223372036854775808",
                     "18446744073709551616",
                     "99999999999999999999999999",
                     "000000000000000000012",
                     "-0",
                     "+5",
                     "-7",
                     "--7",
                     "+-7",
                     "- 7",
                     "0x1F",
                     "010",
                     "1e3",
                     "1.5",
                     "1,000",
                     "1'000",
                     "999999999",
                     "1000000000",
                     "-999999999",
                     "-1000000000",
                     "",
                     "-",
                     "+",
                     "abc",
                     "12abc",
                     "12-3",
                     "\xc2\xa0"
                     "5",
                     "0000000007",
                     "-0000000007"});
    }

    std::string Pick(const std::vector<std::string>& choices) { return choices[random_() % choices.size()]; }

  private:
    std::mt19937 random_;
};

TEST_F(GapFileTest, PlainRecordsAreReadInOrder) {
    Write(">12\t25\t-30\t7\t0\nACGT\n>5 41  3 3\t1 behind\r\nTT\r\n");
    EXPECT_EQ(Records<GapFile>(), "1 12 25 -30 7 0 line 1 [ACGT]\n1 5 41 3 3 1 line 3 [TT\r]\nends at 5\n");
    EXPECT_TRUE(SameAsStream());
}

TEST_F(GapFileTest, FieldsMayLieOnSeveralLines) {
    Write("\n\n>12\n25\n-30 7\n0\nACGT\n>5\t41\t3\t3\t1\nTT\n");
    EXPECT_EQ(Records<GapFile>(), "1 12 25 -30 7 0 line 3 [ACGT]\n1 5 41 3 3 1 line 8 [TT]\nends at 10\n");
    EXPECT_TRUE(SameAsStream());
}

TEST_F(GapFileTest, LastLineNeedsNoEnd) {
    for (const char* text :
         {">1\t2\t3\t4\t5\nACGT", ">1\t2\t3\t4\t5\n", ">1\t2\t3\t4\t5", ">1\t2\t3\t4\t", ">1", ">", ""}) {
        Write(text);
        EXPECT_TRUE(SameAsStream());
    }
}

TEST_F(GapFileTest, NegativeLengthWrapsAndANumberBeyondTheRangeEndsTheReading) {
    Write(">1\t-1\t0\t1\t0\nAC\n>1\t4294967296\t0\t1\t0\nAC\n>1\t5\t0\t1\t0\nAC\n");
    EXPECT_EQ(Records<GapFile>(), "1 1 4294967295 0 1 0 line 1 [AC]\nends at 3\n");
    EXPECT_TRUE(SameAsStream());
}

TEST_F(GapFileTest, LinesLongerThanTheBuffer) {
    Generator generator(1);
    std::string text;
    for (const int size : {100, 131000, 131072, 131073, 400000, 7, 262144, 90}) {
        text += generator.Plain() + ">1\t2\t3\t4\t5\n" + generator.Bases(size) + "\n";
        text += ">1\t2\t3\t4\t5 " + std::string(static_cast<std::size_t>(size), 'x') + "\nACGT\n";
        text += std::string(static_cast<std::size_t>(size), size % 2 == 0 ? ' ' : '\n') + generator.Plain();
        text += ">" + std::string(static_cast<std::size_t>(size), '0') + "1\t2\t3\t4\t5\nACGT\n";
    }
    Write(text);
    EXPECT_TRUE(SameAsStream());
    WriteCompressed(text);
    EXPECT_TRUE(SameAsStream());
}

TEST_F(GapFileTest, RecordsAcrossTheEndsOfTheBuffer) {
    Generator generator(2);
    for (int round = 0; round < 30; ++round) {
        std::string text;
        while (text.size() < 400000) text += generator.OneIn(300) ? generator.Odd(30) : generator.Plain();
        round % 3 == 0 ? WriteCompressed(text) : Write(text);
        ASSERT_TRUE(SameAsStream()) << round;
    }
}

TEST_F(GapFileTest, RandomAndMutatedRecordsReadAsTheStreamReadsThem) {
    Generator generator(3);
    for (int round = 0; round < 30000; ++round) {
        std::string text;
        const int odds = 1 + generator.Below(12);
        for (int records = generator.Below(8); records >= 0; --records) {
            text += generator.OneIn(3) ? generator.Plain() : generator.Odd(odds);
        }
        if (generator.OneIn(3)) generator.Mutate(text);
        generator.OneIn(20) ? WriteCompressed(text) : Write(text);
        ASSERT_TRUE(SameAsStream()) << round;
    }
}

TEST_F(GapFileTest, RecordsPassedOverAreThoseThatDifferInPositionAndBasesAlone) {
    Generator generator(5);
    Len_t passed = 0;
    for (int round = 0; round < 300; ++round) {
        std::string text;
        while (text.size() < 150000) {
            const std::string gap =
                ">" + std::to_string(generator.Below(1000)) + "\t" + std::to_string(generator.Below(99));
            const std::string place = "\t" + std::to_string(generator.Below(9)) + "\t2\n";
            for (int records = generator.Below(40); records > 0; --records) {
                text += gap + "\t" + std::to_string(generator.Below(999) - 99) + place;
                text += generator.Bases(generator.OneIn(20) ? generator.Below(4) : generator.Below(300)) + "\n";
            }
            if (generator.OneIn(8)) text += generator.Odd(20);
        }
        if (generator.OneIn(3)) text.resize(text.size() - 1 - static_cast<std::size_t>(generator.Below(40)));
        generator.OneIn(3) ? WriteCompressed(text) : Write(text);

        GapFile file(path_);
        testing::StreamGapFile plain(path_);
        GapHeader header;
        GapHeader wanted;
        while (file.ReadHeader(header)) {
            ASSERT_TRUE(plain.ReadHeader(wanted));
            ASSERT_EQ(file.HeaderLine(), plain.HeaderLine());
            ASSERT_EQ(header.gap, wanted.gap);
            ASSERT_EQ(header.position, wanted.position);
            ASSERT_EQ(file.ReadSequence(), plain.ReadSequence());
            const std::uint64_t begin = file.Offset();
            const Len_t count = file.PassRepeated();
            ASSERT_EQ(count == 0, file.Offset() == begin);
            for (Len_t i = 0; i < count; ++i) {
                ASSERT_TRUE(plain.ReadHeader(wanted));
                ASSERT_TRUE(wanted.marked);
                ASSERT_EQ(wanted.gap, header.gap);
                ASSERT_EQ(wanted.length, header.length);
                ASSERT_EQ(wanted.scaffold, header.scaffold);
                ASSERT_EQ(wanted.contig, header.contig);
                ASSERT_GT(plain.ReadSequence().size(), 1U);
            }
            passed += count;
        }
        ASSERT_FALSE(plain.ReadHeader(wanted));
    }
    EXPECT_GT(passed, 50000U);
}

TEST_F(GapFileTest, DamagedCompressedFilesEndAtTheSamePlace) {
    Generator generator(4);
    for (int round = 0; round < 400; ++round) {
        std::string text;
        for (int records = 20 + generator.Below(600); records > 0; --records) text += generator.Plain();
        WriteCompressed(text);
        std::string bytes = Bytes();
        const std::size_t at = static_cast<std::size_t>(generator.Below(static_cast<int>(bytes.size())));
        switch (generator.Below(3)) {
            case 0:
                bytes.resize(at);
                break;
            case 1:
                bytes[at] = static_cast<char>(bytes[at] ^ (1 << generator.Below(8)));
                break;
            default:
                bytes.insert(at, "damage");
        }
        Write(bytes);
        ASSERT_TRUE(SameAsStream()) << round;
    }
}

}  // namespace
}  // namespace lintara

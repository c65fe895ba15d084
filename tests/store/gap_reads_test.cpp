#include "store/gap_reads.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "store/load.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using ::testing::ExitedWithCode;

/// A store of its own.
struct Store {
    Scaf* scaffolds = nullptr;
    std::map<int, int> ids;

    Store() = default;
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    ~Store() {
        for (const auto& [id, num] : ids) scaffold_delete(scaffolds[num]);
        delete[] scaffolds;
    }
};

class GapReadsTest : public testing::ThreadStreamsTest {
  protected:
    void SetUp() override {
        ThreadStreamsTest::SetUp();
        gaps_ = Directory() + "/gap.fa";
        contigs_ = Directory() + "/contig.fa";
        std::ofstream(contigs_) << ">scaffold7_0\t0\nACGT\n>scaffold7_1\t25\nGGGG\n>scaffold3_0\t0\nTTTT\n"
                                   ">scaffold3_1\t1\nCCCC\n>scaffold3_2\t40\nAAAA\n>scaffold9_0\t0\nACGT\n";
    }
    void TearDown() override {
        CloseGapPlaces();
        ThreadStreamsTest::TearDown();
    }

    void Write(const std::string& text) const { std::ofstream(gaps_, std::ios::binary) << text; }

    void WriteCompressed(const std::string& text) const {
        gzFile file = gzopen(gaps_.c_str(), "wb1");
        gzwrite(file, text.data(), static_cast<unsigned>(text.size()));
        gzclose(file);
    }

    /// The whole store as text, reads fetched, behind what loading it wrote.
    std::string Loaded(bool places) {
        Store store;
        ::testing::internal::CaptureStderr();
        places ? LoadGapPlaces(gaps_, contigs_, store.scaffolds, store.ids)
               : Loadgapfile(gaps_, contigs_, store.scaffolds, store.ids);
        std::ostringstream text;
        text << ::testing::internal::GetCapturedStderr();
        for (const auto& [id, num] : store.ids) {
            const Scaf& scaffold = store.scaffolds[num];
            text << "scaffold " << id << " at " << num << " with " << scaffold.gapSum << '\n';
            for (Len_t i = 0; i < scaffold.gapSum; ++i) {
                Gap& gap = scaffold.gaps[i];
                in_store_ += gap.reads != nullptr ? 1 : 0;
                const GapReads reads(gap);
                text << "gap " << gap.id << ' ' << gap.gap_length << ' ' << gap.before_contig_id << '\n';
                for (Len_t r = 0; r < gap.greadSum; ++r) text << gap.position[r] << " [" << gap.reads[r] << "]\n";
            }
        }
        return text.str();
    }

    /// Whether both ways of loading give the same.
    ::testing::AssertionResult Same() {
        const std::string wanted = Loaded(false);
        in_store_ = 0;
        const std::string got = Loaded(true);
        if (got == wanted) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "wanted:\n" << wanted << "got:\n" << got;
    }

    void LoadToTheEnd() {
        Store store;
        LoadGapPlaces(gaps_, contigs_, store.scaffolds, store.ids);
        std::exit(0);
    }

    std::string gaps_;
    std::string contigs_;
    int in_store_ = 0;  // gaps whose reads were in the store right behind the last loading
};

const char* const kThreeGaps =
    ">12\t25\t-30\t7\t0\nACGTACGT\n>12\t99\t4\t7\t0\nGGTT\r\n>5 41 3 3 1 anything behind\nTTTTGG\n"
    ">-1\t8\t2\t3\t0\nCC\n";

TEST_F(GapReadsTest, ReadsStayInTheFileUntilTheyAreWanted) {
    Write(kThreeGaps);
    Store store;
    LoadGapPlaces(gaps_, contigs_, store.scaffolds, store.ids);
    Gap& gap = store.scaffolds[1].gaps[0];
    EXPECT_EQ(gap.id, 12);
    EXPECT_EQ(gap.greadSum, 2U);
    EXPECT_EQ(gap.gap_length, 25) << "the first record tells it";
    EXPECT_EQ(gap.reads, nullptr);
    EXPECT_EQ(gap.position, nullptr);
    {
        const GapReads reads(gap);
        ASSERT_NE(gap.reads, nullptr);
        EXPECT_EQ(gap.reads[0], "ACGTACGT");
        EXPECT_EQ(gap.reads[1], "GGTT");
        EXPECT_EQ(gap.position[0], -30);
        EXPECT_EQ(gap.position[1], 4);
    }
    EXPECT_EQ(gap.reads, nullptr);
    EXPECT_EQ(gap.position, nullptr);
    EXPECT_TRUE(Same());
    EXPECT_EQ(in_store_, 0);
}

TEST_F(GapReadsTest, ReadsThatAreInTheStoreStayThere) {
    Write(kThreeGaps);
    Store store;
    Loadgapfile(gaps_, contigs_, store.scaffolds, store.ids);
    const std::string* const reads = store.scaffolds[1].gaps[0].reads;
    { const GapReads fetched(store.scaffolds[1].gaps[0]); }
    EXPECT_EQ(store.scaffolds[1].gaps[0].reads, reads);
}

TEST_F(GapReadsTest, ArraysAreLentToOneGapAfterTheOther) {
    const std::string longest(5000, 'G');
    Write(">12\t25\t-30\t7\t0\nACGTACGT\n>12\t25\t4\t7\t0\n" + longest +
          "\n>5\t41\t3\t3\t1\nTTTTGG\n>8\t8\t2\t3\t0\nCC\n");
    Store store;
    LoadGapPlaces(gaps_, contigs_, store.scaffolds, store.ids);
    Gap& two_reads = store.scaffolds[1].gaps[0];
    Gap& other = store.scaffolds[0].gaps[1];
    Gap& third = store.scaffolds[0].gaps[0];
    const std::string* last = nullptr;
    for (int round = 0; round < 3; ++round) {
        {
            const GapReads reads(two_reads);
            // Those of two gaps at a time stand apart.
            const GapReads more(other);
            EXPECT_EQ(two_reads.reads[0], "ACGTACGT");
            EXPECT_EQ(two_reads.reads[1], longest);
            EXPECT_EQ(two_reads.position[1], 4);
            EXPECT_EQ(other.reads[0], "TTTTGG");
            EXPECT_EQ(other.position[0], 3);
        }
        EXPECT_EQ(two_reads.reads, nullptr);
        const GapReads reads(third);
        EXPECT_EQ(third.reads[0], "CC");
        EXPECT_EQ(third.position[0], 2);
        EXPECT_TRUE(round == 0 || third.reads == last);
        last = third.reads;
    }
}

TEST_F(GapReadsTest, AGapWithoutReadsStaysOne) {
    Write(">12\t25\t-30\t7\t0\nACGT\n");
    Store store;
    LoadGapPlaces(gaps_, contigs_, store.scaffolds, store.ids);
    const GapReads reads(store.scaffolds[0].gaps[0]);
    EXPECT_EQ(store.scaffolds[0].gaps[0].reads, nullptr);
}

TEST_F(GapReadsTest, FilesThatAreLoadedAtOnce) {
    const std::string plain = kThreeGaps;
    for (const std::string& text : {
             plain + ">12\t25\t9\t7\t0\nACGT\n",  // records of a gap apart
             plain + ">6\t25\t9\t8\t0\nACGT\n",   // a scaffold that the contig file does not have
             plain + ">6\t25\t9\t3\t0\nA\n",      // a short read, which is told of
             plain + ">5\t25\t9\t7\t0\nACGT",     // no end of the last line
             "\n" + plain,                        // a blank line
             plain + ">6\n25\t9\t3\t0\nACGT\n",   // a header on two lines
             plain + ">+6\t25\t9\t3\t0\nACGT\n",  // an odd number
             plain + ">-1\t25\t9\t7\t0\nACGT\n",  // one gap at two places
             plain + ">6\t7\t9\t3\t1\nACGT\n>4",  // two gaps at one place, and a cut end
         }) {
        Write(text);
        EXPECT_TRUE(Same()) << text;
        EXPECT_GT(in_store_, 0) << text;
        WriteCompressed(text);
        EXPECT_TRUE(Same()) << text;
        EXPECT_GT(in_store_, 0) << text;
    }
}

TEST_F(GapReadsTest, FirstRecordsOfScaffold0GoToTheFirstScaffold) {
    std::ofstream(contigs_) << ">scaffold-5_0\t0\nACGT\n>scaffold-5_1\t25\nGGGG\n>scaffold0_0\t0\nTTTT\n"
                               ">scaffold0_1\t1\nCCCC\n";
    Write(">3\t25\t47\t0\t0\nACGT\n");
    EXPECT_TRUE(Same());
    Store store;
    LoadGapPlaces(gaps_, contigs_, store.scaffolds, store.ids);
    EXPECT_EQ(store.scaffolds[store.ids[-5]].gaps[0].id, 3);
}

TEST_F(GapReadsTest, ThereAreNoPlacesInAPipe) {
    EXPECT_FALSE(HasPlaces(gaps_)) << "no such file";
    EXPECT_FALSE(HasPlaces(Directory()));
    ASSERT_EQ(mkfifo(gaps_.c_str(), 0600), 0);
    EXPECT_FALSE(HasPlaces(gaps_)) << "and it is not waited for";
    std::filesystem::remove(gaps_);
    Write("");
    EXPECT_TRUE(HasPlaces(gaps_));
}

TEST_F(GapReadsTest, OfACompressedFileTheTextIsKept) {
    WriteCompressed(kThreeGaps);
    EXPECT_TRUE(Same());
    EXPECT_EQ(in_store_, 0);
    Store store;
    LoadGapPlaces(gaps_, contigs_, store.scaffolds, store.ids);
    Write("something else");
    const GapReads reads(store.scaffolds[0].gaps[1]);
    EXPECT_EQ(store.scaffolds[0].gaps[1].reads[0], "TTTTGG");
}

TEST_F(GapReadsTest, ACutCompressedFileIsUsedUpToTheCut) {
    std::string text;
    for (int i = 0; i < 3000; ++i) text += ">12\t25\t" + std::to_string(i) + "\t7\t0\nACGTACGT\n";
    WriteCompressed(text);
    const std::uintmax_t size = std::filesystem::file_size(gaps_);
    for (int tenth = 1; tenth < 10; ++tenth) {
        WriteCompressed(text);
        std::filesystem::resize_file(gaps_, size * static_cast<std::uintmax_t>(tenth) / 10);
        EXPECT_TRUE(Same()) << tenth;
    }
}

TEST_F(GapReadsTest, FaultsEndTheProcessWhileLoading) {
    const std::string plain = ">12\t25\t-30\t7\t0\nACGTACGT\n";
    Write(plain + ">5\t41\t3\t3\t2\nTT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255),
                "gap.fa: line 3: contig index 2 is outside the gaps of scaffold 3, which has 2\n");
    Write(plain + ">5\t41\t3\t7\t0\nTT\n>5\t41\t3\t7\t0\nTT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255), "gap.fa: line 5: more reads for gap 5 than counted: 1\n");
    Write(plain + "5\t41\t3\t3\t0\nTT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255), "Error in load gap file\n");
}

TEST_F(GapReadsTest, AFileThatIsGoneIsStillRead) {
    Write(kThreeGaps);
    Store store;
    LoadGapPlaces(gaps_, contigs_, store.scaffolds, store.ids);
    std::filesystem::remove(gaps_);
    const GapReads reads(store.scaffolds[0].gaps[1]);
    EXPECT_EQ(store.scaffolds[0].gaps[1].reads[0], "TTTTGG");
}

TEST_F(GapReadsTest, AFileThatHasChangedEndsTheProcess) {
    Write(kThreeGaps);
    Store store;
    LoadGapPlaces(gaps_, contigs_, store.scaffolds, store.ids);
    const auto fetch = [&](const std::string& text) {
        Write(text);
        const GapReads reads(store.scaffolds[1].gaps[0]);
        std::exit(0);
    };
    for (const std::string text : {"", ">12\t25\t-30\t7\t0\nACGTACGT\n>12", "ACGT",
                                   ">13\t25\t-30\t7\t0\nACGTACGT\n>13\t99\t4\t7\t0\nGGTT\r\n"}) {
        EXPECT_EXIT(fetch(text), ExitedWithCode(255), "Fail to load file .*gap.fa\n") << text;
    }
}

/// A gap file of a few gaps, most of them such that their reads can stay there.
class Generator {
  public:
    explicit Generator(unsigned seed) : random_(seed) {}

    std::string File() {
        std::vector<std::string> records;
        const std::vector<std::string> places = {"\t7\t0", "\t3\t0", "\t3\t1"};
        for (std::size_t gap = 0; gap < places.size(); ++gap) {
            for (int reads = Below(OneIn(30) ? 3000 : 5); reads > 0; --reads) {
                records.push_back(Record(static_cast<int>(gap) + 10, places[gap]));
            }
        }
        if (OneIn(6)) std::shuffle(records.begin(), records.end(), random_);
        std::string text;
        for (const std::string& record : records) text += record;
        return text;
    }
    bool OneIn(int n) { return Below(n) == 0; }

  private:
    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

    std::string Record(int gap, const std::string& place) {
        std::string record = ">" + std::to_string(gap) + "\t" + std::to_string(OneIn(5) ? Below(2000) : 77) + "\t";
        record += std::to_string(Below(1200) - 100) + place;
        if (OneIn(40)) record += std::vector<std::string>{" ", "\r", " x y z", "\t1\t2\t3\t4\t5\t6\t7\t8\t9"}[Below(4)];
        record += '\n';
        const int size = OneIn(2000) ? 140000 : OneIn(2000) ? 1 : 2 + Below(150);
        for (int i = 0; i < size; ++i) record += "ACGTN"[Below(OneIn(50) ? 5 : 4)];
        return record + (OneIn(100) ? "\r\n" : "\n");
    }

    std::mt19937 random_;
};

TEST_F(GapReadsTest, RandomFilesGiveTheStoreThatLoadingThemAtOnceGives) {
    Generator generator(7);
    int fetched = 0;
    for (int round = 0; round < 400; ++round) {
        const std::string text = generator.File();
        generator.OneIn(3) ? WriteCompressed(text) : Write(text);
        ASSERT_TRUE(Same()) << round;
        fetched += in_store_ == 0 ? 1 : 0;
    }
    EXPECT_GT(fetched, 100);
    EXPECT_LT(fetched, 390);
}

}  // namespace
}  // namespace lintara

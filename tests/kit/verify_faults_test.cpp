// The `verify` command when its mapping or its mapper is not what it should be.
#include <gtest/gtest.h>

#include "support.h"

namespace lintara::kit {
namespace {

class VerifyFaults : public test::KitTest {
  protected:
    VerifyFaults() {
        Put("filled.fa", ">empty\n>s\n" + test::RandomBases(400, 3) + "\n");
        Put("filled.bed", "s\t200\t220\tgap1\t1\tsmall\t4.00\n");
        Put("1.fq", "@p/1\nACGT\n+\nIIII\n");
        Put("2.fq", "@p/2\nACGT\n+\nIIII\n");
    }
    int Run(const std::string& more, const std::string& before = "") const {
        return Kit("verify --quiet -s " + Path("filled.fa") + " --bed " + Path("filled.bed") + " -o " + Path("table") +
                       " --mask-file " + Path("masked.fa") + " " + more,
                   before);
    }
    void ExpectMapperFault(const std::string& script, const std::string& words) const {
        std::filesystem::create_directories(Path("bin"));
        Script("bin/bwa", "[ \"$1\" = index ] && exit 0\n" + script + "\n");
        EXPECT_EQ(Run("-1 " + Path("1.fq") + " -2 " + Path("2.fq"), "PATH=" + Path("bin") + ":$PATH timeout 20"), 1);
        EXPECT_EQ(Err(), "lintara-kit: " + words + "\n");
        EXPECT_FALSE(Exists("table"));
        EXPECT_FALSE(Exists("masked.fa"));
        // The folder of the mapper's index is gone, too.
        for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
            EXPECT_EQ(entry.path().filename().string().find("lintara-verify"), std::string::npos);
        }
    }
};

TEST_F(VerifyFaults, MapperWhoseStreamIsNoMappingIsTold) {
    ExpectMapperFault("exec yes 'these are words'", "the mapper's output: this is no SAM, BAM or CRAM file");
}

TEST_F(VerifyFaults, MapperThatKnowsOtherScaffoldsIsTold) {
    std::string records = "; exec yes 'r\t4\t*\t0\t0\t*\t*\t0\t0\tA\t*'";
    for (const char* name : {"7", "x", "-1", "1x"}) {
        ExpectMapperFault("printf '@SQ\\tSN:" + std::string(name) + "\\tLN:400\\n'" + records,
                          "the mapper's output: mapped to other scaffolds: '" + std::string(name) +
                              "' of 400 bases is not among them");
    }
}

TEST_F(VerifyFaults, MapperThatFailsIsToldWithItsLastWords) {
    ExpectMapperFault("printf '@SQ\\tSN:1\\tLN:400\\n'; echo last words >&2; exit 4",
                      "bwa ended with status 4: last words");
    ExpectMapperFault("printf '@SQ\\tSN:1\\tLN:400\\nhalf\\t0'; kill -9 $$", "bwa was ended by signal 9 (Killed)");
}

TEST_F(VerifyFaults, CutShortMappingsAreTold) {
    if (!test::Installed("samtools")) GTEST_SKIP() << "samtools is not installed";
    test::Sam sam("@SQ\tSN:empty\tLN:0\n@SQ\tSN:s\tLN:400\n");
    for (int i = 0; i < 200; ++i) {
        sam.Record("r" + std::to_string(i), 0, {i, false, 60, "100M", test::RandomBases(100, static_cast<unsigned>(i))},
                   {}, 0);
    }
    Put("in.sam", sam.Text());
    Put("reference.fa", ">s\n" + test::RandomBases(400, 3) + "\n");
    ASSERT_EQ(Shell("cd " + folder_ +
                    " && { samtools view -b -o a.bam in.sam && samtools view -C -T reference.fa -o "
                    "a.cram in.sam; } 2>log"),
              0)
        << Get("log");
    EXPECT_EQ(Run("--bam " + Path("a.bam")), 0) << Err();
    for (const char* name : {"a.bam", "a.cram"}) {
        std::string whole = Get(name);
        size_t mark = std::string(name) == "a.bam" ? 28 : 38;
        for (size_t size : {whole.size() / 2, whole.size() - mark}) {
            Put(std::string("cut") + name, whole.substr(0, size));
            std::filesystem::remove(Path("table"));
            EXPECT_EQ(Run("--bam " + Path(std::string("cut") + name)), 1) << name << size;
            EXPECT_EQ(Err(), "lintara-kit: " + Path(std::string("cut") + name) + ": the file is cut short\n");
            EXPECT_FALSE(Exists("table"));
        }
    }
}

}  // namespace
}  // namespace lintara::kit

#include "store/gzstream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "support/thread_streams.h"

namespace lintara {
namespace {

class GzStream : public testing::ThreadStreamsTest {
  protected:
    std::string WritePlain(const std::string& text) {
        const std::string path = Directory() + "/plain";
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

    std::string WriteCompressed(const std::string& text) {
        const std::string path = Directory() + "/packed";
        gzFile file = gzopen(path.c_str(), "wb");
        gzwrite(file, text.data(), static_cast<unsigned>(text.size()));
        gzclose(file);
        return path;
    }

    static std::string ReadAll(const std::string& path) {
        igzstream in(path.c_str(), 0, std::ios::in);
        EXPECT_TRUE(in);
        std::string text;
        for (char c; in.get(c);) text += c;
        return text;
    }

    static std::string RandomText(std::size_t size) {
        std::mt19937 random(7);
        std::string text(size, ' ');
        for (char& c : text) c = static_cast<char>(random() % 256);
        text[0] = '>';  // never the magic number of a compressed file
        return text;
    }
};

TEST_F(GzStream, PlainAndCompressedFilesReadAlike) {
    for (const std::size_t size : {1U, 298U, 299U, 300U, 5000U}) {
        const std::string text = RandomText(size);
        EXPECT_EQ(ReadAll(WritePlain(text)), text);
        EXPECT_EQ(ReadAll(WriteCompressed(text)), text);
    }
}

TEST_F(GzStream, CutFileEndsAtTheDamage) {
    const std::string text = RandomText(100000);
    const std::string path = WriteCompressed(text);
    std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
    igzstream in(path.c_str(), 0, std::ios::in);
    std::string got;
    for (char c; in.get(c);) got += c;
    EXPECT_TRUE(in.eof());
    EXPECT_LT(got.size(), text.size());
    EXPECT_GT(got.size(), 0U);
    EXPECT_EQ(got, text.substr(0, got.size()));
}

TEST_F(GzStream, FourCharactersCanBePutBackAfterARefill) {
    const std::string text = RandomText(700);
    igzstream in(WritePlain(text).c_str(), 0, std::ios::in);
    // The pieces are of 299 bytes: the character at 299 is the first after a refill.
    for (int i = 0; i < 300; ++i) in.get();
    for (int i = 299; i >= 295; --i) {
        in.putback(text[static_cast<std::size_t>(i)]);
        ASSERT_TRUE(in) << i;
    }
    in.putback(text[294]);
    EXPECT_TRUE(in.bad());
    in.clear();
    EXPECT_EQ(in.get(), static_cast<unsigned char>(text[295]));
}

TEST_F(GzStream, LargeAndSmallReadsMixed) {
    const std::string text = RandomText(200000);
    std::mt19937 random(8);
    for (const std::string& path : {WritePlain(text), WriteCompressed(text)}) {
        for (int round = 0; round < 30; ++round) {
            igzstream in(path.c_str(), 0, std::ios::in);
            std::string got;
            while (in && got.size() < text.size()) {
                std::string piece(1 + random() % (random() % 2 == 0 ? 10 : 5000), '\0');
                in.read(piece.data(), static_cast<std::streamsize>(piece.size()));
                got.append(piece, 0, static_cast<std::size_t>(in.gcount()));
                if (!in || random() % 4 != 0) continue;
                // Those just read, so that no more than four are ever waiting.
                for (std::size_t back = std::min<std::size_t>(1 + random() % 4, piece.size()); back > 0; --back) {
                    in.putback(got.back());
                    ASSERT_TRUE(in) << got.size();
                    got.pop_back();
                }
            }
            ASSERT_EQ(got, text);
            EXPECT_EQ(in.get(), std::char_traits<char>::eof());
        }
    }
}

TEST_F(GzStream, NothingCanBePutBackBeforeTheFirstRead) {
    igzstream in(WritePlain("abc").c_str(), 0, std::ios::in);
    EXPECT_EQ(in.peek(), 'a');
    in.putback('x');
    EXPECT_TRUE(in.bad());
}

TEST_F(GzStream, MissingFileFails) {
    igzstream in((Directory() + "/none").c_str(), 0, std::ios::in);
    EXPECT_TRUE(!in);
}

TEST_F(GzStream, OpenRefusesModesThatCannotBeHad) {
    const std::string path = WritePlain("abc");
    gzstreambuf buffer;
    EXPECT_EQ(buffer.open(path.c_str(), 0, std::ios::in | std::ios::out), nullptr);
    EXPECT_EQ(buffer.open(path.c_str(), 0, std::ios::in | std::ios::app), nullptr);
    EXPECT_EQ(buffer.open(path.c_str(), 0, std::ios::in | std::ios::ate), nullptr);
    EXPECT_FALSE(buffer.is_open());
    EXPECT_EQ(buffer.open(path.c_str(), 99, std::ios::in), &buffer);
    EXPECT_TRUE(buffer.is_open());
    EXPECT_EQ(buffer.open(path.c_str(), 0, std::ios::in), nullptr) << "already open";
    EXPECT_EQ(buffer.close(), &buffer);
    EXPECT_EQ(buffer.close(), nullptr) << "already closed";
}

TEST_F(GzStream, ReadingFromAClosedBufferIsTheEndOfTheFile) {
    gzstreambuf buffer;
    EXPECT_EQ(buffer.sgetc(), std::char_traits<char>::eof());
}

TEST_F(GzStream, OpenAndCloseOfTheStreamSetTheFailState) {
    igzstream in;
    in.open(WritePlain("abc").c_str(), 0, std::ios::in);
    EXPECT_TRUE(in);
    EXPECT_EQ(in.get(), 'a');
    in.close();
    EXPECT_TRUE(in);
    in.open((Directory() + "/none").c_str(), 0, std::ios::in);
    EXPECT_TRUE(in.fail());
}

TEST_F(GzStream, LevelsOutsideTheRangeAreBroughtIntoIt) {
    const std::string path = WritePlain("abc");
    for (const int level : {-5, 0, 1, 9, 10}) {
        igzstream in(path.c_str(), level, std::ios::in);
        EXPECT_EQ(in.get(), 'a') << level;
    }
}

}  // namespace
}  // namespace lintara

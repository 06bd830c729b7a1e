#include "archive_names.hpp"

#include <pk/project/error.hpp>

#include <gtest/gtest.h>

namespace {

using pk::project::ArchiveNames;
using pk::project::LimitError;

// Names of which all have one hash in which a letter counts 33 times the one behind it.
std::string colliding(int number)
{
    std::string name;
    for (int bit = 0; bit < 18; ++bit) {
        name += ((number >> bit) & 1) != 0 ? "aB" : "b!";
    }
    return name;
}

} // namespace

TEST(ArchiveNames, AreManyAndLong)
{
    ArchiveNames names;
    for (int i = 0; i < 1'000'000; ++i) {
        names.add("some/folder/and a box " + std::to_string(i) + "/box.bhx");
    }
}

TEST(ArchiveNames, MayMeetATimeOrAThousand)
{
    ArchiveNames names;
    for (int i = 0; i < 6000; ++i) {
        names.add(colliding(i));
    }
}

TEST(ArchiveNames, AreRefusedWhenTooManyMeet)
{
    ArchiveNames names;
    int count = 0;
    try {
        for (; count < 7000; ++count) {
            names.add(colliding(count));
        }
        FAIL() << "were not refused";
    } catch (const LimitError& error) {
        EXPECT_EQ(std::string(error.what()),
                  "'" + colliding(count) +
                      "' and other names take too long to tell apart in an archive, which a "
                      "directory does not");
    }
}

// Their hashes differ, but not in the last bits, which say the place.
TEST(ArchiveNames, MeetByAPartOfTheirHash)
{
    ArchiveNames names;
    const auto addMany = [&names] {
        int count = 0;
        for (unsigned i = 0; count < 80'000; ++i) {
            const std::string name = std::to_string(i);
            unsigned hash = 5381;
            for (const char c : name) {
                hash = hash * 33 + static_cast<unsigned char>(c);
            }
            if (hash % 1024 == 0) {
                names.add(name);
                ++count;
            }
        }
    };
    EXPECT_THROW(addMany(), LimitError);
}

#pragma once

#include "index.hpp"

#include <QByteArray>

#include <cstdint>
#include <string>
#include <vector>

namespace pk::project {

/// What a save does to a project directory, as renames alone: first everything that does not stay
/// where it is is *collected* into the journal directory, then everything new or moved is *put* in
/// its place. What a save takes away is collected and never put.
struct Journal
{
    /// A path below the project, or below an item that was collected before.
    struct Location
    {
        int item = -1; ///< -1: the project
        std::string path;
    };
    struct Collect
    {
        Location from;
        int item = 0;
        Stamp before; ///< of a file, as the save knows it
    };
    /// An item's way to its place below the project, or a directory to be made there.
    struct Put
    {
        std::string path;
        int item = -1;          ///< -1: a new directory
        std::uint16_t mode = 0; ///< of the new directory
        bool replace = false;   ///< a file is there, which the item takes the place of
        Stamp before;           ///< of that file, as the save knows it

        bool makesDirectory() const { return item < 0; }
    };

    std::vector<Collect> collects; ///< directories before what is in them
    std::vector<Put> puts;         ///< directories before what is in them

    bool isEmpty() const { return collects.empty() && puts.empty(); }
    /// Whether one rename is all.
    bool isOneRename() const
    {
        return collects.size() + puts.size() == 1 &&
               (puts.empty() || !puts.front().makesDirectory());
    }

    QByteArray toBytes() const;
    /// Throws FormatError for bytes that toBytes() didn't make, and for a path that leaves the
    /// project.
    static Journal fromBytes(const QByteArray& bytes, const std::string& path);
};

} // namespace pk::project

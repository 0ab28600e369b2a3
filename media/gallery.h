// The picture gallery: the pictures of a category or of the whole Hangar, fifteen to a page, one of them marked.
#pragma once

#include "package/filter_words.h"
#include "package/package_ref.h"
#include "package/walk.h"
#include "platform/file_system.h"

#include <string>
#include <vector>

namespace korvadex {

struct GalleryPicture {
    std::string path;
    PackageRef package;
    bool isInstalled = false; // the package, in the simulator
    bool operator==(const GalleryPicture&) const = default;
};
struct Gallery {
    std::vector<GalleryPicture> pictures;
    bool isLevelCut = false; // a directory held more subdirectories than a walk looks at
    std::string unreadable;  // the first directory that could not be listed; "" for none
};

// The pictures of every package below the Hangar or a category directory (which ends in a backslash), package by
// package. None counts as installed.
Gallery CollectGalleryImages(const FileSystem& files, const Locations& locations, const std::string& directory,
                             const WalkLimits& limits);

// Whether all the words stand in the names of package, category and file.
bool IsInPicture(const FilterWords& words, const GalleryPicture& picture);

// What the gallery leaves out and why, in one sentence; "" when it is whole.
std::string DescribeGaps(const Gallery& gallery, const WalkLimits& limits);

enum class GalleryStep { Left, Right, Up, Down, PageUp, PageDown, First, Last };

// Which page is shown and which picture is marked. Pictures count from 1; 0 stands for none.
class GalleryPages {
  public:
    static constexpr int PageSize = 15, RowSize = 5;

    explicit GalleryPages(int pictureCount = 0) : count(pictureCount) {}

    int Start() const { return start; } // the picture in the first thumbnail
    // The picture in thumbnail 0 to 14.
    int At(int thumbnail) const;
    bool HasNext() const { return start + PageSize <= count; }
    bool HasPrevious() const { return start > 1; }
    int Number() const { return (start - 1) / PageSize + 1; }
    int Count() const; // at least 1
    int Marked() const { return marked; }

    // Turning a page takes the mark away.
    void Next();
    void Previous();
    // Marks a picture and turns to its page; 0 takes the mark away.
    void Mark(int picture);
    // Moves the mark as a key does; without a mark an arrow marks the page's first picture, the others go from there.
    void Move(GalleryStep step);
    // The page that holds the picture, or the last one.
    void TurnTo(int picture);

  private:
    int count;
    int start = 1;
    int marked = 0;
};

} // namespace korvadex

#include "media/gallery.h"

#include "package/pictures.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

// Goes down from the Hangar, or from a category, one level at a time.
class GalleryWalk {
  public:
    GalleryWalk(const FileSystem& fileSystem, const WalkLimits& walkLimits) : files(fileSystem), limits(walkLimits) {}

    void AddHangar(const std::string& directory) {
        for (const auto& category : Level(directory))
            AddCategory(directory + category + "\\", category);
    }
    void AddCategory(const std::string& directory, const std::string& category) {
        for (const auto& package : Level(directory))
            for (auto& path : PackagePictures(files, directory + package + "\\", limits))
                gallery.pictures.push_back({std::move(path), {category, package}});
    }

    Gallery gallery;

  private:
    std::vector<std::string> Level(const std::string& directory) {
        std::vector<std::string> names;
        const auto entries = files.List(directory);
        if (!entries) {
            if (entries.fault() != FileFault::NotFound && gallery.unreadable.empty())
                gallery.unreadable = directory;
            return names;
        }
        for (const auto& entry : *entries) {
            if (!IsSubdirectory(files, directory, entry))
                continue;
            if (names.size() == MaxSubdirectoriesPerLevel) {
                gallery.isLevelCut = true;
                break;
            }
            names.push_back(entry.name);
        }
        return names;
    }

    const FileSystem& files;
    const WalkLimits& limits;
};

} // namespace

Gallery CollectGalleryImages(const FileSystem& files, const Locations& locations, const std::string& directory,
                             const WalkLimits& limits) {
    GalleryWalk walk(files, limits);
    if (EqualNoCase(directory, locations.HangarDir))
        walk.AddHangar(directory);
    else
        walk.AddCategory(directory, LastPathComponent(WithoutBackslash(directory)));
    return std::move(walk.gallery);
}

bool IsInPicture(const FilterWords& words, const GalleryPicture& picture) {
    return words.AreIn(FoldCase(picture.package.Text() + "\\" + LastPathComponent(picture.path)));
}

std::string DescribeGaps(const Gallery& gallery, const WalkLimits& limits) {
    if (!gallery.unreadable.empty())
        return "The directory " + gallery.unreadable + " could not be read; its pictures are not shown.";
    return gallery.isLevelCut ? DescribeCut(ListCut::Level, limits) : "";
}

int GalleryPages::At(int thumbnail) const {
    return start + thumbnail <= count ? start + thumbnail : 0;
}

int GalleryPages::Count() const {
    return std::max(1, (count + PageSize - 1) / PageSize);
}

void GalleryPages::Next() {
    if (HasNext())
        start += PageSize;
    marked = 0;
}

void GalleryPages::Previous() {
    if (HasPrevious())
        start -= PageSize;
    marked = 0;
}

void GalleryPages::TurnTo(int picture) {
    start = (std::clamp(picture, 1, std::max(1, count)) - 1) / PageSize * PageSize + 1;
}

void GalleryPages::Mark(int picture) {
    marked = picture >= 1 && picture <= count ? picture : 0;
    if (marked)
        TurnTo(marked);
}

void GalleryPages::Move(GalleryStep step) {
    if (!marked) {
        Mark(At(0));
        if (step == GalleryStep::Left || step == GalleryStep::Right || step == GalleryStep::Up ||
            step == GalleryStep::Down)
            return;
    }
    // Past the end there is the last picture, unless it stands in the row (or on the page) where the mark is.
    const auto forward = [&](int distance) {
        const bool isLast = (marked - 1) / distance == (count - 1) / distance;
        return isLast ? marked : std::min(marked + distance, count);
    };
    const auto back = [&](int distance) { return marked > distance ? marked - distance : marked; };
    switch (step) {
    case GalleryStep::Left:
        return Mark(back(1));
    case GalleryStep::Right:
        return Mark(forward(1));
    case GalleryStep::Up:
        return Mark(back(RowSize));
    case GalleryStep::Down:
        return Mark(forward(RowSize));
    case GalleryStep::PageUp:
        return Mark(back(PageSize));
    case GalleryStep::PageDown:
        return Mark(forward(PageSize));
    case GalleryStep::First:
        return Mark(1);
    case GalleryStep::Last:
        return Mark(count);
    }
}

} // namespace korvadex

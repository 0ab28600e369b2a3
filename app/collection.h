// The whole collection at a glance: the packages of the Hangar with what is known of each, filtered and sorted.
#pragma once

#include "app/hangar_listing.h"
#include "package/package_ref.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// What a package's own files say of it.
struct PackageFacts {
    bool isRead = false; // otherwise it has not been looked at yet, or cannot be
    std::string title;   // of the aircraft
    std::string alias;   // whose panel or sound it uses, "lear\panel"; "" when it has its own
    std::uint64_t bytes = 0;
    FileTime added{};
    bool isCompressed = false;

    bool operator==(const PackageFacts&) const = default;
};

struct CollectionPackage {
    PackageRef ref;
    bool isInstalled = false;
    PackageFacts facts;
    std::vector<std::string> missingGauges; // by the last check since it was installed

    bool operator==(const CollectionPackage&) const = default;
};

struct CollectionCategory {
    std::string name;
    std::size_t count = 0; // of its packages, those that the filter leaves out among them
    std::vector<CollectionPackage> packages;

    bool operator==(const CollectionCategory&) const = default;
};
using CollectionView = std::vector<CollectionCategory>;

// Installed ones first, the largest first, those added last first; where that is the same, by name.
enum class CollectionOrder { Name, Installed, Size, Added };

// "Lear 45, installed in MSFS, compressed": what the marks of a package say.
std::string DescribeMarks(const CollectionPackage& package);
// All that is known, in lines that end in CR LF but for the last.
std::string DescribePackage(const CollectionPackage& package);

class Collection {
  public:
    Collection(const FileSystem& fileSystem, const Locations& known) : files(fileSystem), locations(known) {}

    // What there is now. What was known of a package stays so.
    void Take(const HangarListing& hangar);
    // Packages may have changed: each is looked at again, and read where it has.
    void LookAgain();
    // This one has changed, maybe where a look does not see it.
    void Forget(const PackageRef& package);
    // Goes on reading for about this long. False when all is read.
    bool ReadMore(std::chrono::milliseconds time);
    // A check of the gauges of the installed aircraft of that name.
    void NoteMissingGauges(std::string_view name, const std::vector<std::string>& missing);

    const HangarListing& Listing() const { return taken; }
    // Grows with every change of what Arrange gives.
    int Revision() const { return revision; }
    // The packages that have all words of the filter in their names, titles or texts of the information window, in
    // whatever case. Categories without one are left out while there is a filter.
    CollectionView Arrange(std::string_view filter = "", CollectionOrder order = CollectionOrder::Name) const;

  private:
    struct Entry {
        CollectionPackage package;
        std::string words;    // what the filter looks at, folded
        std::size_t seen = 0; // of the directory when it was read
        bool isToBeSeen = true;
    };
    struct Category {
        std::string name;
        std::vector<Entry> entries;
    };
    void Look(Entry& entry);
    void Read(Entry& entry, const std::vector<DirectoryEntry>& listed);

    const FileSystem& files;
    const Locations& locations;
    HangarListing taken;
    std::vector<Category> categories;
    std::size_t nextCategory = 0, nextEntry = 0;
    int revision = 0;
};

} // namespace korvadex

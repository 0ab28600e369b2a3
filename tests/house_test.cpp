// The floors are as docs/architecture.md draws them: what includes what, and who knows of Qt and of the host.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace korvadex::test {
namespace {

namespace fs = std::filesystem;

// Where a folder stands in the picture. One that covers a part of it and stands further down is below it.
struct Place {
    int line = 0;
    std::size_t from = 0, to = 0;

    bool IsBelow(const Place& upper) const { return line > upper.line && from < upper.to && upper.from < to; }
};

struct House {
    std::map<std::string, Place> floors;
    std::set<std::string> beside;

    House() {
        std::ifstream page(KORVADEX_ROOT "/docs/architecture.md");
        const std::regex besideName("([a-z]+)( \\([^)]*\\))?( |$)"), floorName("\\| ([a-z]+)  ");
        int number = 0;
        for (std::string line; std::getline(page, line) && line.find("A command on its way") == line.npos; ++number) {
            if (const std::string mark = "beside the house:"; line.find(mark) != line.npos)
                for (std::sregex_iterator
                         at(line.begin() + static_cast<long>(line.find(mark) + mark.size()), line.end(), besideName),
                     end;
                     at != end; ++at)
                    beside.insert(at->str(1));
            for (std::sregex_iterator at(line.begin(), line.end(), floorName), end; at != end; ++at) {
                const auto from = static_cast<std::size_t>(at->position());
                floors[at->str(1)] = {number, from, line.find('|', from + 1)};
            }
        }
    }

    bool MayInclude(const std::string& folder, const std::string& other) const {
        return folder == other || beside.contains(folder) ||
               (floors.contains(other) && floors.at(other).IsBelow(floors.at(folder)));
    }
};

TEST(HouseTest, StandsAsItIsDrawn) {
    const House house;
    EXPECT_EQ(house.floors.size(), 9u);
    const std::regex include("\\s*#include [\"<]([^\">]*)[\">].*"), qt("Q[A-Z].*|Qt.*|ui_.*"),
        host("windows\\.h|shellapi\\.h|unistd\\.h|fcntl\\.h|dirent\\.h|spawn\\.h|sys/.*"),
        hostFile(".*(_posix|_win32)\\..*|win32\\..*"), withQt("ui|demo|tour|bench|tests");
    int count = 0;
    std::string sources;
    for (const auto& directory : fs::directory_iterator(KORVADEX_ROOT)) {
        const std::string folder = directory.path().filename().string();
        if (!directory.is_directory() || folder == "build" || folder.starts_with('.'))
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(directory)) {
            const std::string name = entry.path().filename().string();
            if (!name.ends_with(".cpp") && !name.ends_with(".h"))
                continue;
            SCOPED_TRACE(entry.path().string());
            ASSERT_TRUE(house.floors.contains(folder) || house.beside.contains(folder)) << "is not in the picture";
            std::ifstream source(entry.path());
            std::smatch match;
            sources += name + '\n';
            for (std::string line; std::getline(source, line);) {
                sources += line + '\n';
                if (!std::regex_match(line, match, include))
                    continue;
                ++count;
                const std::string included = match[1];
                const bool isOurs = line.find('"') != line.npos && included.find('/') != included.npos;
                EXPECT_TRUE(!isOurs || house.MayInclude(folder, included.substr(0, included.find('/')))) << included;
                EXPECT_TRUE(!std::regex_match(included, qt) || std::regex_match(folder, withQt)) << included;
                EXPECT_TRUE(!std::regex_match(included, host) || house.beside.contains(folder) ||
                            std::regex_match(name, hostFile))
                    << included;
            }
        }
    }
    EXPECT_GT(count, 1000);

    // The pages for newcomers name what there is: "RunCommand", "MainWindow".
    const std::regex word("[A-Za-z]*[a-z][A-Z][A-Za-z]*");
    for (const char* page : {KORVADEX_ROOT "/docs/architecture.md", KORVADEX_ROOT "/CONTRIBUTING.md"}) {
        std::ifstream file(page);
        for (std::string line; std::getline(file, line);)
            for (std::sregex_iterator at(line.begin(), line.end(), word), end; at != end; ++at)
                EXPECT_NE(sources.find(at->str()), sources.npos) << page << ": " << at->str();
    }
}

} // namespace
} // namespace korvadex::test

#include "tests/support/faulty_files.h"

#include "platform/windows_path.h"

#include <gtest/gtest.h>

namespace korvadex::test {

class FaultyFiles::Output : public OutputFile {
  public:
    Output(FaultyFiles& faultyFiles, std::unique_ptr<OutputFile> realFile, std::string name)
        : files(faultyFiles), file(std::move(realFile)), path(std::move(name)) {}

    Status Write(std::span<const std::byte> bytes) override {
        Status status = files.Count("Write", path);
        if (status)
            return file->Write(bytes);
        static_cast<void>(file->Write(bytes.first(bytes.size() / 2)));
        return status;
    }
    Status Flush() override {
        Status status = files.Count("Flush", path);
        return status ? file->Flush() : status;
    }
    Status Close(bool flush) override {
        Status status = files.Count("Close", path);
        Status closed = file->Close(flush);
        return status ? closed : status;
    }

  private:
    FaultyFiles& files;
    std::unique_ptr<OutputFile> file;
    std::string path;
};

Status FaultyFiles::Count(const char* what, Path path) {
    ++changes;
    return rule ? Status{rule(what, path), path, 0} : Status{};
}

Status FaultyFiles::Move(const char* what, Path from, Path to, const std::function<Status()>& move) {
    Status status = Count(what, to);
    if (status && CrossesVolumes(from, to))
        return {FileFault::OtherVolume, from, 0};
    return status ? move() : status;
}

bool FaultyFiles::CrossesVolumes(Path a, Path b) const {
    return !volume.empty() && IsAtOrBelow(a, volume) != IsAtOrBelow(b, volume);
}

std::vector<Status> FaultyFiles::Flush(std::span<const std::string> paths) {
    std::vector<Status> outcomes = real.Flush(paths);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (Status status = Count("Flush", paths[i]); !status)
            outcomes[i] = status;
    }
    return outcomes;
}

std::vector<Status> FaultyFiles::ReplaceAll(std::span<const Replacement> replacements) {
    std::vector<Status> outcomes;
    for (const Replacement& replacement : replacements) {
        const auto replace = [&] { return real.ReplaceAll(std::span(&replacement, 1)).front(); };
        outcomes.push_back(Move("Replace", replacement.from, replacement.to, replace));
    }
    return outcomes;
}

Result<std::unique_ptr<OutputFile>> FaultyFiles::CreateNew(Path path) {
    if (Status status = Count("CreateNew", path); !status)
        return status;
    auto file = real.CreateNew(path);
    if (!file)
        return file.status();
    return std::unique_ptr<OutputFile>(std::make_unique<Output>(*this, std::move(*file), path));
}

int StopAtEachChange(FileSystem& files, const std::function<void(FaultyFiles&)>& work) {
    for (int change = 1;; ++change) {
        SCOPED_TRACE("stopped at change " + std::to_string(change));
        FaultyFiles faulty(files);
        faulty.StopAt(change);
        work(faulty);
        if (faulty.Changes() < change)
            return change - 1;
    }
}

} // namespace korvadex::test

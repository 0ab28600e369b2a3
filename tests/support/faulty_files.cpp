#include "tests/support/faulty_files.h"

#include "platform/windows_path.h"

namespace korvadex::test {

class FaultyFiles::Output : public OutputFile {
  public:
    Output(FaultyFiles& faultyFiles, std::unique_ptr<OutputFile> realFile, std::string name)
        : files(faultyFiles), file(std::move(realFile)), path(std::move(name)) {}

    Status Write(std::span<const std::byte> bytes) override {
        Status status = files.Change("Write", path);
        if (status)
            return file->Write(bytes);
        static_cast<void>(file->Write(bytes.first(bytes.size() / 2)));
        return status;
    }
    Status Close(bool flush) override {
        Status status = files.Change("Close", path);
        Status closed = file->Close(flush);
        return status ? closed : status;
    }

  private:
    FaultyFiles& files;
    std::unique_ptr<OutputFile> file;
    std::string path;
};

void FaultyFiles::FailAt(int change, FileFault fault) {
    failing = change;
    failFault = fault;
}

void FaultyFiles::StopAt(int change, FileFault fault) {
    stopping = change;
    stopFault = fault;
}

void FaultyFiles::FailWhere(std::function<FileFault(const std::string&, const std::string&)> newRule) {
    rule = std::move(newRule);
}

Status FaultyFiles::Change(const char* what, const std::string& path, const std::string& to) {
    log.push_back(std::string(what) + " " + path + (to.empty() ? "" : " -> " + to));
    if (stopping > 0 && Changes() >= stopping)
        return {stopFault, path, 0};
    if (Changes() == failing)
        return {failFault, path, 0};
    if (rule)
        return {rule(what, to.empty() ? path : to), path, 0};
    return {};
}

bool FaultyFiles::CrossesVolumes(const std::string& a, const std::string& b) const {
    return !volume.empty() && IsAtOrBelow(a, volume) != IsAtOrBelow(b, volume);
}

Result<std::unique_ptr<OutputFile>> FaultyFiles::CreateNew(const std::string& path) {
    if (Status status = Change("CreateNew", path); !status)
        return status;
    auto file = real.CreateNew(path);
    if (!file)
        return file.status();
    return std::unique_ptr<OutputFile>(std::make_unique<Output>(*this, std::move(*file), path));
}

Status FaultyFiles::Copy(const std::string& from, const std::string& to) {
    Status status = Change("Copy", from, to);
    return status ? real.Copy(from, to) : status;
}

Status FaultyFiles::Rename(const std::string& from, const std::string& to) {
    Status status = Change("Rename", from, to);
    if (status && CrossesVolumes(from, to))
        return {FileFault::OtherVolume, from, 0};
    return status ? real.Rename(from, to) : status;
}

Status FaultyFiles::Replace(const std::string& from, const std::string& to) {
    Status status = Change("Replace", from, to);
    if (status && CrossesVolumes(from, to))
        return {FileFault::OtherVolume, from, 0};
    return status ? real.Replace(from, to) : status;
}

Status FaultyFiles::Delete(const std::string& path) {
    Status status = Change("Delete", path);
    return status ? real.Delete(path) : status;
}

Status FaultyFiles::CreateDirectory(const std::string& path) {
    Status status = Change("CreateDirectory", path);
    return status ? real.CreateDirectory(path) : status;
}

Status FaultyFiles::RemoveDirectory(const std::string& path) {
    Status status = Change("RemoveDirectory", path);
    return status ? real.RemoveDirectory(path) : status;
}

Status FaultyFiles::ClearAttributes(const std::string& path) {
    Status status = Change("ClearAttributes", path);
    return status ? real.ClearAttributes(path) : status;
}

Status FaultyFiles::SetReadOnly(const std::string& path, bool readOnly) {
    Status status = Change("SetReadOnly", path);
    return status ? real.SetReadOnly(path, readOnly) : status;
}

Status FaultyFiles::SetTime(const std::string& path, FileTime time) {
    Status status = Change("SetTime", path);
    return status ? real.SetTime(path, time) : status;
}

Status FaultyFiles::CopyAttributes(const std::string& from, const std::string& to) {
    Status status = Change("CopyAttributes", from, to);
    return status ? real.CopyAttributes(from, to) : status;
}

Result<std::uint64_t> FaultyFiles::FreeSpace(const std::string& directory) const {
    if (freeSpace)
        return *freeSpace;
    return real.FreeSpace(directory);
}

bool FaultyFiles::SameVolume(const std::string& a, const std::string& b) const {
    return !CrossesVolumes(a, b) && real.SameVolume(a, b);
}

Result<std::vector<DirectoryEntry>> FaultyFiles::List(const std::string& directory) const {
    return real.List(directory);
}
Result<FileInfo> FaultyFiles::Info(const std::string& path) const {
    return real.Info(path);
}
bool FaultyFiles::IsDirectory(const std::string& path) const {
    return real.IsDirectory(path);
}
Result<std::unique_ptr<InputFile>> FaultyFiles::OpenForReading(const std::string& path) const {
    return real.OpenForReading(path);
}
std::vector<std::string> FaultyFiles::Drives() const {
    return real.Drives();
}
std::string FaultyFiles::HostPath(const std::string& path) const {
    return real.HostPath(path);
}
std::optional<std::string> FaultyFiles::PathFromHost(const std::string& hostPath) const {
    return real.PathFromHost(hostPath);
}

} // namespace korvadex::test

#include "platform/file_streams_win32.h"

#include <algorithm>

namespace korvadex {

namespace {

constexpr std::size_t MaxChunk = 16 << 20; // bytes for one call of the system

class WindowsInputFile final : public InputFile {
  public:
    WindowsInputFile(UniqueHandle file, std::string filePath) : handle(std::move(file)), path(std::move(filePath)) {}

    Result<std::size_t> Read(std::span<std::byte> buffer) override {
        std::size_t total = 0;
        while (total < buffer.size()) {
            const auto wanted = static_cast<DWORD>(std::min<std::size_t>(buffer.size() - total, MaxChunk));
            DWORD got = 0;
            if (!ReadFile(handle.get(), buffer.data() + total, wanted, &got, nullptr))
                return NativeFault(path);
            if (got == 0)
                break;
            total += got;
        }
        return total;
    }

  private:
    UniqueHandle handle;
    std::string path;
};

class WindowsOutputFile final : public OutputFile {
  public:
    WindowsOutputFile(UniqueHandle file, std::string filePath) : handle(std::move(file)), path(std::move(filePath)) {}

    Status Write(std::span<const std::byte> bytes) override {
        while (!bytes.empty()) {
            const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), MaxChunk));
            DWORD written = 0;
            if (!WriteFile(handle.get(), bytes.data(), wanted, &written, nullptr))
                return NativeFault(path);
            if (written == 0)
                return NativeFault(path, ERROR_DISK_FULL);
            bytes = bytes.subspan(written);
        }
        return {};
    }

    Status Flush() override { return FlushFileBuffers(handle.get()) ? Status{} : NativeFault(path); }

    Status Close(bool flush) override {
        if (!handle)
            return {};
        if (Status flushed = flush ? Flush() : Status{}; !flushed)
            return flushed;
        if (!CloseHandle(handle.release()))
            return NativeFault(path);
        return {};
    }

  private:
    UniqueHandle handle;
    std::string path;
};

} // namespace

std::unique_ptr<InputFile> MakeInputFile(UniqueHandle handle, const std::string& path) {
    return std::make_unique<WindowsInputFile>(std::move(handle), path);
}

std::unique_ptr<OutputFile> MakeOutputFile(UniqueHandle handle, const std::string& path) {
    return std::make_unique<WindowsOutputFile>(std::move(handle), path);
}

} // namespace korvadex

// The log of the command that is running: what it does is written here first.
#pragma once

#include "journal/kept_places.h"
#include "journal/record.h"

#include <memory>
#include <string>
#include <vector>

namespace korvadex {

class CommandLog {
  public:
    // The file is made with the first record. heading: the first line.
    CommandLog(FileSystem& files, std::string path, std::string heading);

    // The number of the record; the record is safe from the end of this program, and after Flush from a power cut.
    Result<std::size_t> Append(const Record& record);
    // The record says what was not done after all.
    void Void(std::size_t number);
    // When the last two records are a rename there and back, they say what was not done.
    void VoidRoundTrip();
    Status Append(const std::vector<LeftPlace>& left);
    Status Flush();

    // Another first line, as long as there is none.
    void SetHeading(std::string line) { heading = std::move(line); }
    bool IsEmpty() const { return count == 0; }
    const std::string& Path() const { return path; }
    // Those that count, from this one on.
    std::vector<Record> Records(std::size_t from = 0) const;
    // Their numbers.
    std::vector<std::size_t> Numbers(std::size_t from) const;
    std::size_t Count() const { return count; }
    // The first failure to write; what comes after it is not written.
    const Status& Trouble() const { return trouble; }
    // No more is written.
    void Close() { file.reset(); }
    // As if there had never been one.
    void Abandon();

  private:
    Status Open();
    Status Write(const std::string& text);

    FileSystem& files;
    const std::string path;
    std::string heading;
    std::unique_ptr<OutputFile> file;
    std::vector<Record> records;
    std::vector<bool> isVoid;
    std::size_t count = 0;
    bool isFlushed = true, isNameFlushed = false;
    Status trouble;
};

} // namespace korvadex

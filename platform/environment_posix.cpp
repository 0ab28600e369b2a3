#include "platform/environment.h"

#include <cstdlib>
#include <filesystem>

namespace korvadex {

std::string EnvironmentVariable(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value ? value : "";
}

std::string AbsoluteHostPath(const std::string& path) {
    std::error_code error;
    std::string absolute = std::filesystem::absolute(path, error).lexically_normal().string();
    if (absolute.size() > 1 && absolute.ends_with('/'))
        absolute.pop_back();
    return error ? path : absolute;
}

std::string UserDataDirectory() {
    const std::string data = EnvironmentVariable("XDG_DATA_HOME");
    return data.starts_with('/') ? data : EnvironmentVariable("HOME") + "/.local/share";
}

} // namespace korvadex

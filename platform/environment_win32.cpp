#include "platform/environment.h"

#include "platform/win32.h"

namespace korvadex {

std::string EnvironmentVariable(const std::string& name) {
    const auto wideName = ToWide(name);
    std::wstring value(32767, L'\0'); // the most that Windows keeps
    const DWORD length =
        wideName ? GetEnvironmentVariableW(wideName->c_str(), value.data(), static_cast<DWORD>(value.size())) : 0;
    return FromWide(std::wstring_view(value).substr(0, length));
}

std::string AbsoluteHostPath(const std::string& path) {
    const auto widePath = ToWide(path);
    std::wstring absolute(32767, L'\0');
    const DWORD length =
        widePath ? GetFullPathNameW(widePath->c_str(), static_cast<DWORD>(absolute.size()), absolute.data(), nullptr)
                 : 0;
    return length == 0 || length >= absolute.size() ? path : FromWide(std::wstring_view(absolute).substr(0, length));
}

std::string UserDataDirectory() {
    return EnvironmentVariable("LOCALAPPDATA");
}

} // namespace korvadex

// A converter that goes by the name: .jpg and .gif stay, .png becomes JPEG, all else is no picture.
#pragma once

#include "media/picture_import.h"
#include "platform/windows_path.h"

namespace korvadex::test {

class FakeConverter : public PictureConverter {
  public:
    PreparedPicture Prepare(const std::string& path) override {
        if (EndsWithNoCase(path, ".jpg") || EndsWithNoCase(path, ".jpeg"))
            return {".jpg", "", ""};
        if (EndsWithNoCase(path, ".gif"))
            return {".gif", "", ""};
        if (EndsWithNoCase(path, ".png"))
            return {"", "a JPEG", ""};
        return {"", "", "no picture."};
    }
};

} // namespace korvadex::test

// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace Kelvo::Testing {

/// A fresh folder under the system's temporary folder, removed with everything in it when
/// the object dies.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return root; }

    /// Writes `bytes` to the file `name` in the folder and returns its absolute path.
    std::filesystem::path write(const std::string& name, std::string_view bytes) const;

private:
    std::filesystem::path root;
};

/// The absolute path of a file of tests/refdata.
std::filesystem::path refData(const std::string& relativePath);

} // namespace Kelvo::Testing

// SPDX-License-Identifier: MIT
#include "support/TemporaryDirectory.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace Kelvo::Testing {

TemporaryDirectory::TemporaryDirectory()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "kelvo-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("cannot create a temporary folder from " + pattern);
    }
    root = pattern;
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
}

std::filesystem::path TemporaryDirectory::write(const std::string& name, std::string_view bytes) const
{
    const auto file = root / name;
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
    return file;
}

std::filesystem::path refData(const std::string& relativePath)
{
    return std::filesystem::path(KELVO_REFDATA_DIR) / relativePath;
}

} // namespace Kelvo::Testing

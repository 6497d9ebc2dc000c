// SPDX-License-Identifier: MIT
#include "Geodesy/Trajectory/FileWriter.h"

#include "FileAccess.h"

#include <cerrno>
#include <fstream>
#include <ios>

namespace Kelvo::Geodesy::Trajectory {
namespace {

std::unique_ptr<std::ostream> openForWriting(const std::filesystem::path& path)
{
    errno = 0;
    auto file = std::make_unique<std::ofstream>(path, std::ios::binary | std::ios::trunc);
    if (!file->is_open()) {
        throw openFailure(errno != 0 ? errno : EIO, path);
    }
    return file;
}

} // namespace

FileWriter::FileWriter(const std::filesystem::path& path)
    : ownedStream(openForWriting(path))
    , out(ownedStream.get())
{
}

FileWriter::FileWriter(std::ostream& stream)
    : out(&stream)
{
}

FileWriter::~FileWriter() = default;
FileWriter::FileWriter(FileWriter&&) noexcept = default;
FileWriter& FileWriter::operator=(FileWriter&&) noexcept = default;

void FileWriter::flush()
{
    if (!out->flush()) {
        throw std::ios_base::failure("Failed to write trajectory records.");
    }
}

void FileWriter::writeBytes(const char* bytes, std::size_t count)
{
    if (!out->write(bytes, static_cast<std::streamsize>(count))) {
        throw std::ios_base::failure("Failed to write trajectory records.");
    }
}

} // namespace Kelvo::Geodesy::Trajectory

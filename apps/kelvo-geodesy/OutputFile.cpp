// SPDX-License-Identifier: MIT
#include "OutputFile.h"

#include "Context.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <system_error>

#include <unistd.h>

namespace Kelvo::Tool {
namespace {

std::string reason(int error)
{
    return error != 0 ? std::strerror(error) : "write failed";
}

} // namespace

AtomicFile::AtomicFile(std::filesystem::path target)
    : target(std::move(target))
{
    const std::string name = this->target.filename().string();
    if (name.empty()) {
        throw InputError(this->target, "not a file name");
    }
    temporary = this->target.parent_path() / ("." + name + "." + std::to_string(::getpid()) + ".partial");
    errno = 0;
    file.open(temporary, std::ios::binary | std::ios::trunc);
    if (!file.is_open()) {
        throw InputError(this->target, "cannot be written: " + reason(errno));
    }
}

AtomicFile::~AtomicFile()
{
    if (!committed) {
        file.close();
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
    }
}

void AtomicFile::commit()
{
    errno = 0;
    file.flush();
    file.close();
    if (file.fail()) {
        throw InputError(target, "cannot be written: " + reason(errno));
    }
    std::error_code error;
    std::filesystem::rename(temporary, target, error);
    if (error) {
        throw InputError(target, "cannot be written: " + error.message());
    }
    committed = true;
}

DataOutput::DataOutput(std::ostream& standardOutput, const std::optional<std::filesystem::path>& file)
    : standardOutput(standardOutput)
{
    if (file) {
        this->file.emplace(*file);
    }
}

void DataOutput::commit()
{
    if (file) {
        file->commit();
    } else if (!standardOutput.flush()) {
        throw InputError("standard output", "cannot be written");
    }
}

} // namespace Kelvo::Tool

// SPDX-License-Identifier: MIT
// What every fuzz target shares: a silenced library, a scratch folder for the files it
// feeds to the readers, the byte decoding that the oracles check the readers against, and
// the oracle's way to report a finding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>

class FuzzedDataProvider;

namespace Kelvo::Fuzzing {

/// Reports a finding: writes "fuzz finding: <what>" on stderr and aborts, which libFuzzer
/// turns into a crash report with the input that caused it.
[[noreturn]] void finding(const std::string& what);

/// Reports a finding unless `condition` holds.
inline void expect(bool condition, const char* what)
{
    if (!condition) {
        finding(what);
    }
}

/// Silences the library once per process: assertion reports are counted instead of printed
/// (the library goes on after them, as documented), log messages and events are dropped.
void quietLibrary();

/// Assertion reports of the library since the process started.
std::uint64_t assertionCount();

/// This process's folder for the files it writes: made on first use in the system's
/// temporary folder, removed at exit.
const std::filesystem::path& scratchFolder();

/// Writes `bytes` to the file `name` in the scratch folder and returns its path.
std::filesystem::path scratchFile(const std::string& name, std::string_view bytes);

/// Whether `error` is one that opening or reading a trajectory file documents: a
/// std::system_error (a file that cannot be opened or is empty, a failed stream), or a
/// std::runtime_error saying that a file is truncated or was read past its end.
bool isReaderError(const std::exception& error);

/// Runs `action`. True when it returns; false when it throws an exception that
/// `documented(exception)` accepts. Any other exception is a finding.
template <typename Action, typename Documented>
bool completes(Action&& action, Documented&& documented)
{
    try {
        action();
        return true;
    } catch (const std::exception& error) {
        if (!documented(error)) {
            finding(std::string("undocumented exception: ") + error.what());
        }
    } catch (...) {
        finding("an exception that is not a std::exception");
    }
    return false;
}

/// Calls getNext() until endOfFile(), as the readers' callers do, handing each record kept to
/// `keep(record, index)`. More calls than `maxCalls` is a finding: a stream that never ends.
template <typename Reader, typename Keep>
std::uint64_t readUntilEnd(Reader& reader, std::uint64_t maxCalls, Keep&& keep)
{
    std::uint64_t kept = 0;
    for (std::uint64_t calls = 1;; ++calls) {
        expect(calls <= maxCalls, "more getNext() calls than the file has bytes before endOfFile()");
        const auto record = reader.getNext();
        if (reader.endOfFile()) {
            return kept;
        }
        keep(record, kept++);
    }
}

/// What the reader targets do with a reader opened on a file of `count` whole records: read
/// `readBeforeRewind` of them, rewind, read to the end (every record kept), call getNext()
/// once more (which must throw `endOfFileMessage`), then rewind after the end and read again
/// as a caller does, which must end too. `keep(record, index)` checks every record kept.
template <typename Reader, typename Keep>
void readRewindAndReadAgain(Reader& reader, std::uint64_t count, std::uint64_t readBeforeRewind,
                            std::uint64_t maxCalls, std::string_view endOfFileMessage, Keep&& keep)
{
    for (std::uint64_t i = 0; i < readBeforeRewind % (count + 1) && i < count; ++i) {
        keep(reader.getNext(), i);
        expect(!reader.endOfFile(), "endOfFile() is set before the last whole record was read");
    }
    reader.returnToBegin();
    expect(readUntilEnd(reader, maxCalls, keep) == count, "a rewound reader does not read every whole record");
    const bool threw = !completes([&] { reader.getNext(); },
                                  [&](const std::exception& error) { return error.what() == endOfFileMessage; });
    expect(threw, "getNext() after the end does not throw");

    // Rewinding after the end does not clear the stream's failure: reading again must end,
    // and whatever it keeps must still be the file's records.
    reader.returnToBegin();
    readUntilEnd(reader, maxCalls, keep);
}

/// The value of type T stored at `bytes` in little-endian (`bigEndian` false) or big-endian
/// byte order, decoded independently of the library's own byte-order code.
template <typename T>
T decode(const char* bytes, bool bigEndian)
{
    unsigned char ordered[sizeof(T)];
    for (std::size_t i = 0; i < sizeof(T); ++i) {
        const std::size_t littleIndex = bigEndian ? sizeof(T) - 1 - i : i;
        ordered[littleIndex] = static_cast<unsigned char>(bytes[i]);
    }
    // The hosts this runs on are little-endian.
    T value;
    std::memcpy(&value, ordered, sizeof(T));
    return value;
}

/// Whether two doubles have the same bits (NaN payloads and signed zeros included).
bool sameBits(double a, double b);

/// A request time for a provider, as `input` chooses: any bits (NaN, infinities, subnormals,
/// negatives, huge values), one of the odd values below, a time around the span
/// [first, last] of the data (a quarter of it below to a quarter above, ends included), or a
/// step back from `previous`.
double requestTime(FuzzedDataProvider& input, double first, double last, double previous);

} // namespace Kelvo::Fuzzing

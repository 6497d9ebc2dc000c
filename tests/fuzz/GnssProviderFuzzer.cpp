// SPDX-License-Identifier: MIT
// The GNSS provider and its factory over any text as an RTKLIB position file, asked for
// solutions at odd times. Nothing may throw (failures are assertions); an answer given
// without an assertion is the requested time, inside the used time interval, and finite
// when every line the parser takes holds moderate numbers.
// Input: the text, then the query bytes, then two bytes (the text's length) and one byte
// (the velocity threshold).
#include "FuzzSupport.h"

#include "Geodesy/GNSS/GnssDataProviderFactory.h"
#include "Geodesy/GNSS/RtkLibGnssDataProvider.h"
#include "Geodesy/GNSS/RtkLibPosLine.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <limits>
#include <memory>

using namespace Kelvo;
using namespace Kelvo::Fuzzing;
using Geodesy::GNSS::GnssData;

namespace {

constexpr double THRESHOLDS[] = {0.5, 0.0, 1e-3, 10.0, -1.0, std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN()};

/// Whether every value of `data` passes `test`.
template <typename Test>
bool allValues(const GnssData& data, Test&& test)
{
    const auto& p = data.positionCovariance;
    const auto& v = data.velocityCovariance;
    for (const double value : {data.gpsTime.secondsInWeek, static_cast<double>(data.position.latitude),
                               static_cast<double>(data.position.longitude), data.position.height, data.velocity.getX(),
                               data.velocity.getY(), data.velocity.getZ(), p.xy, p.xz, p.yz, v.xy, v.xz, v.yz}) {
        if (!test(value)) {
            return false;
        }
    }
    return true;
}

/// Whether every line that the parser takes holds moderate numbers.
bool moderateRecords(const std::string& text)
{
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const auto record = Geodesy::GNSS::parseRtkLibPosLine(std::string_view(text).substr(start, end - start));
        if (record && !allValues(*record, [](double value) { return std::abs(value) < 1e100; })) {
            return false;
        }
        start = end + 1;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    quietLibrary();
    FuzzedDataProvider input(data, size);
    const double threshold = input.PickValueInArray(THRESHOLDS);
    const std::string text = input.ConsumeBytesAsString(input.ConsumeIntegral<std::uint16_t>());
    const auto queryBytes = input.ConsumeRemainingBytes<std::uint8_t>();
    FuzzedDataProvider queries(queryBytes.data(), queryBytes.size());
    const auto path = scratchFile("fuzz.pos", text);

    std::unique_ptr<Geodesy::GNSS::GnssDataProvider> provider;
    const auto nothingIsDocumented = [](const std::exception&) { return false; };
    completes([&] { provider = Geodesy::GNSS::GnssDataProviderFactory().create({Core::FileInfo(path)}, threshold); },
              nothingIsDocumented);
    auto* rtklib = dynamic_cast<Geodesy::GNSS::RtkLibGnssDataProvider*>(provider.get());
    expect(rtklib != nullptr, "the factory gives no RTKLIB provider for a .pos file");
    const auto interval = rtklib->getTimeInterval();
    const bool moderateFile = moderateRecords(text);

    double previous = interval.data.second;
    while (queries.remaining_bytes() > 0) {
        const double time = requestTime(queries, interval.data.first, interval.data.second, previous);
        previous = time;
        const auto before = assertionCount();
        std::unique_ptr<GnssData> answer;
        completes([&] { answer = provider->getGnssData(time); }, nothingIsDocumented);
        provider->getCurrentGnssData();
        if (!answer || assertionCount() != before) {
            continue;
        }
        expect(sameBits(answer->gpsTime.secondsInWeek, time), "an answer is not at the requested time");
        expect(time >= interval.data.first && time <= interval.data.second,
               "an answer for a time outside the used time interval");
        expect(!moderateFile || allValues(*answer, [](double value) { return std::isfinite(value); }),
               "an answer between records of moderate numbers is not finite");
    }
    return 0;
}

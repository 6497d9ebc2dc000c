// SPDX-License-Identifier: MIT
#include "Projection/CrsTransformer.h"

#include "CrsText.h"

#include "Core/Exception.h"
#include "Geodesy/Batch/ArgumentError.h"
#include "Maths/Degree.h"
#include "Maths/Radian.h"

#include <cmath>
#include <limits>
#include <mutex>
#include <utility>
#include <vector>

namespace Kelvo::Projection {
namespace {

using Geodesy::Batch::ArgumentError;
using Geodesy::Batch::ThreadCount;

/// The transformation every worker copies: built once; afterwards only cloned (and asked
/// about), under its mutex, since a PJ serves one thread at a time.
struct Operation {
    ProjContext context;
    PjPointer pj;
    std::mutex mutex;
    std::string source; ///< "source CRS 'EPSG:4979'", for messages
    std::string target;
};

/// A PROJ context with its own copy of the transformation: what one thread transforms with.
struct Worker {
    ProjContext context;
    PjPointer pj;
};

/// How the columns meet PROJ, which reads and writes longitude, latitude in degrees.
enum class Columns {
    native,      ///< as PROJ has them
    geodeticIn,  ///< the input is latitude, longitude in radians
    geodeticOut, ///< the output is latitude, longitude in radians
};

const std::array<std::string, 3> GEODETIC_NAMES = {"latitude", "longitude", "height"};
const std::array<std::string, 3> CARTESIAN_NAMES = {"x", "y", "z"};

const char* frameCrs(CrsTransformer::Frame frame)
{
    return frame == CrsTransformer::Frame::geodetic ? "EPSG:4979" : "EPSG:4978";
}

double toDegrees(double radians)
{
    return Maths::Radian(radians).toDegree();
}

double toRadians(double degrees)
{
    return Maths::Degree(degrees).toRadian();
}

std::shared_ptr<Operation> makeOperation(const std::string& sourceCrs, const std::string& targetCrs)
{
    auto operation = std::make_shared<Operation>();
    ProjContext& context = operation->context;
    const PjPointer source = createCrs(context, sourceCrs, "source CRS");
    const PjPointer target = createCrs(context, targetCrs, "target CRS");
    operation->source = quoted("source CRS", sourceCrs);
    operation->target = quoted("target CRS", targetCrs);
    const PjPointer direct(
        proj_create_crs_to_crs_from_pj(context.get(), source.get(), target.get(), nullptr, nullptr));
    // Longitude or easting first, whatever order the authority gives the axes.
    if (direct) {
        operation->pj.reset(proj_normalize_for_visualization(context.get(), direct.get()));
    }
    if (!operation->pj) {
        const std::string reason = context.lastMessage();
        ProjContext::forwardMessages(context.takeMessages());
        throw ArgumentError("no transformation from " + operation->source + " to " + operation->target +
                            (reason.empty() ? std::string() : ": " + reason));
    }
    ProjContext::forwardMessages(context.takeMessages());
    return operation;
}

/// The columns of one call: inputs and outputs of equal length; outputs may be the inputs.
struct Batch {
    std::array<const double*, 3> in;
    std::array<double*, 3> out;
};

} // namespace

struct CrsTransformer::Impl {
    std::shared_ptr<Operation> operation;
    PJ_DIRECTION direction = PJ_FWD;
    Columns columns = Columns::native;
    std::array<std::string, 3> inputNames = CARTESIAN_NAMES;
    std::array<std::string, 3> outputNames = CARTESIAN_NAMES;

    /// Idle workers, kept for later calls: a call takes one per thread range.
    mutable std::mutex poolMutex;
    mutable std::vector<std::unique_ptr<Worker>> idle;

    std::unique_ptr<Worker> acquire() const;
    void release(std::unique_ptr<Worker> worker) const;
    std::size_t run(const Batch& batch, std::size_t count, ThreadCount threads) const;
    std::size_t runRange(Worker& worker, const Batch& batch, std::size_t begin, std::size_t end) const;
};

std::unique_ptr<Worker> CrsTransformer::Impl::acquire() const
{
    {
        const std::lock_guard lock(poolMutex);
        if (!idle.empty()) {
            auto worker = std::move(idle.back());
            idle.pop_back();
            return worker;
        }
    }
    auto worker = std::make_unique<Worker>();
    {
        const std::lock_guard lock(operation->mutex);
        worker->pj.reset(proj_clone(worker->context.get(), operation->pj.get()));
    }
    if (!worker->pj) {
        throw Core::Exception("PROJ cannot copy the transformation from " + operation->source + " to " +
                              operation->target + ": " + worker->context.lastMessage());
    }
    return worker;
}

void CrsTransformer::Impl::release(std::unique_ptr<Worker> worker) const
{
    const std::lock_guard lock(poolMutex);
    idle.push_back(std::move(worker));
}

std::size_t CrsTransformer::Impl::runRange(Worker& worker, const Batch& batch, std::size_t begin,
                                           std::size_t end) const
{
    const auto [in0, in1, in2] = batch.in;
    const auto [out0, out1, out2] = batch.out;
    // The arrays PROJ works on, in place: its x is longitude or easting.
    double* projX = out0;
    double* projY = out1;
    for (std::size_t i = begin; i < end; ++i) {
        const double a = in0[i];
        const double b = in1[i];
        out2[i] = in2[i];
        switch (columns) {
        case Columns::native: out0[i] = a; out1[i] = b; break;
        case Columns::geodeticIn: out0[i] = toDegrees(b); out1[i] = toDegrees(a); break;
        // PROJ writes longitude into its x: make that the second output column.
        case Columns::geodeticOut: out1[i] = a; out0[i] = b; break;
        }
    }
    if (columns == Columns::geodeticOut) {
        std::swap(projX, projY);
    }
    const std::size_t n = end - begin;
    if (n > 0) {
        proj_trans_generic(worker.pj.get(), direction, projX + begin, sizeof(double), n, projY + begin,
                           sizeof(double), n, out2 + begin, sizeof(double), n, nullptr, 0, 0);
    }
    // PROJ marks the points it cannot transform with infinities.
    const auto finiteOrNaN = [](double value) {
        return std::isinf(value) ? std::numeric_limits<double>::quiet_NaN() : value;
    };
    std::size_t failed = 0;
    for (std::size_t i = begin; i < end; ++i) {
        out0[i] = finiteOrNaN(out0[i]);
        out1[i] = finiteOrNaN(out1[i]);
        out2[i] = finiteOrNaN(out2[i]);
        if (columns == Columns::geodeticOut) {
            out0[i] = toRadians(out0[i]);
            out1[i] = toRadians(out1[i]);
        }
        failed += std::isnan(out0[i]) || std::isnan(out1[i]) || std::isnan(out2[i]) ? 1 : 0;
    }
    return failed;
}

std::size_t CrsTransformer::Impl::run(const Batch& batch, std::size_t count, ThreadCount threads) const
{
    std::mutex resultMutex;
    std::size_t failed = 0;
    std::vector<ProjContext::Message> messages;
    threads.forEachRange(count, [&](std::size_t begin, std::size_t end) {
        std::unique_ptr<Worker> worker = acquire();
        const std::size_t rangeFailed = runRange(*worker, batch, begin, end);
        auto rangeMessages = worker->context.takeMessages();
        release(std::move(worker));
        const std::lock_guard lock(resultMutex);
        failed += rangeFailed;
        messages.insert(messages.end(), rangeMessages.begin(), rangeMessages.end());
    });
    // On the caller's thread: a logging sink need not be safe to call from several threads.
    ProjContext::forwardMessages(messages);
    return failed;
}

CrsTransformer::CrsTransformer(const std::string& sourceCrs, const std::string& targetCrs)
    : impl(std::make_unique<Impl>())
{
    impl->operation = makeOperation(sourceCrs, targetCrs);
}

CrsTransformer::CrsTransformer(Frame source, const std::string& targetCrs)
    : CrsTransformer(frameCrs(source), targetCrs)
{
    if (source == Frame::geodetic) {
        impl->columns = Columns::geodeticIn;
        impl->inputNames = GEODETIC_NAMES;
    }
}

CrsTransformer::CrsTransformer(std::unique_ptr<Impl> impl)
    : impl(std::move(impl))
{
}

CrsTransformer::CrsTransformer(CrsTransformer&&) noexcept = default;
CrsTransformer& CrsTransformer::operator=(CrsTransformer&&) noexcept = default;
CrsTransformer::~CrsTransformer() = default;

CrsTransformer CrsTransformer::inverse() const
{
    const Operation& operation = *impl->operation;
    {
        const std::lock_guard lock(impl->operation->mutex);
        if (proj_pj_info(operation.pj.get()).has_inverse == 0) {
            throw ArgumentError("the transformation from " + operation.source + " to " + operation.target +
                                " has no inverse");
        }
    }
    auto inverted = std::make_unique<Impl>();
    inverted->operation = impl->operation;
    inverted->direction = impl->direction == PJ_FWD ? PJ_INV : PJ_FWD;
    inverted->columns = impl->columns == Columns::geodeticIn    ? Columns::geodeticOut
                        : impl->columns == Columns::geodeticOut ? Columns::geodeticIn
                                                                : Columns::native;
    inverted->inputNames = impl->outputNames;
    inverted->outputNames = impl->inputNames;
    return CrsTransformer(std::move(inverted));
}

const std::array<std::string, 3>& CrsTransformer::inputNames() const
{
    return impl->inputNames;
}

const std::array<std::string, 3>& CrsTransformer::outputNames() const
{
    return impl->outputNames;
}

std::size_t CrsTransformer::transform(std::span<const double> first, std::span<const double> second,
                                      std::span<const double> third, std::span<double> x, std::span<double> y,
                                      std::span<double> z, ThreadCount threads) const
{
    const std::size_t count = first.size();
    const auto check = [&](std::size_t size, const std::string& name) {
        if (size != count) {
            throw ArgumentError(name + " has " + std::to_string(size) + " values, " + impl->inputNames[0] + " has " +
                                std::to_string(count));
        }
    };
    check(second.size(), impl->inputNames[1]);
    check(third.size(), impl->inputNames[2]);
    check(x.size(), "output " + impl->outputNames[0]);
    check(y.size(), "output " + impl->outputNames[1]);
    check(z.size(), "output " + impl->outputNames[2]);
    return impl->run({{first.data(), second.data(), third.data()}, {x.data(), y.data(), z.data()}}, count, threads);
}

std::size_t CrsTransformer::transformInPlace(std::span<double> first, std::span<double> second,
                                             std::span<double> third, ThreadCount threads) const
{
    return transform(first, second, third, first, second, third, threads);
}

} // namespace Kelvo::Projection

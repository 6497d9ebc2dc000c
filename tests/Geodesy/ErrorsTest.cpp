// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"

#include "Geodesy/CoordinateSystem/OutputCoordinateSystemNotSupportedException.h"
#include "Geodesy/ErrorManagement/GeodesyErrors.h"
#include "Geodesy/ErrorManagement/PackageIdEnumErrorIdentifier.h"
#include "Geodesy/FileDoNotExistsException.h"
#include "Geodesy/FileIsEmptyException.h"
#include "Utils/ErrorManagement/ErrorIdentifierFactory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <exception>
#include <type_traits>
#include <utility>

namespace Kelvo::Geodesy {
namespace {

using CoordinateSystem::OutputCoordinateSystemNotSupportedException;
using Testing::AssertionRecorder;
using Utils::ErrorManagement::ErrorIdentifierFactory;
using Utils::ErrorManagement::PackageIdentifier;
using ::testing::ElementsAre;

TEST(GeodesyErrors, PackageIsRegisteredWhileTheLibraryIsLoaded)
{
    ASSERT_TRUE(ErrorIdentifierFactory::isRegistered(PackageIdentifier::GEODESY));
    const auto identifier = ErrorIdentifierFactory::create(PackageIdentifier::GEODESY, 0);
    ASSERT_NE(identifier, nullptr);
    EXPECT_EQ(static_cast<unsigned>(identifier->getPackage()), 24u);
    EXPECT_EQ(identifier->getErrorId(), 0u);
    EXPECT_NE(dynamic_cast<const ErrorManagement::PackageIdEnumErrorIdentifier*>(identifier.get()), nullptr);

    // Numbers from LAST_ERROR on are reported but still made.
    EXPECT_EQ(ErrorManagement::LAST_ERROR, 1u);
    AssertionRecorder recorder;
    const auto last = ErrorIdentifierFactory::create(PackageIdentifier::GEODESY, 1);
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->getErrorId(), 1u);
    ASSERT_THAT(recorder.messages(),
                ElementsAre(Testing::assertText("errorId < Kelvo::Geodesy::ErrorManagement::GeodesyErrors::LAST_ERROR")));
    EXPECT_EQ(recorder.records()[0].file, "src/Geodesy/src/Geodesy/ErrorManagement/GeodesyErrors.cpp");
}

// Both file exceptions are caught as the family's base exception, and neither as the other.
static_assert(std::is_convertible_v<FileDoNotExistsException*, Core::Exception*>);
static_assert(std::is_convertible_v<FileIsEmptyException*, Core::Exception*>);
static_assert(!std::is_base_of_v<FileDoNotExistsException, FileIsEmptyException>);
static_assert(!std::is_base_of_v<FileIsEmptyException, FileDoNotExistsException>);
// The coordinate system exception is a standard exception outside that family.
static_assert(std::is_convertible_v<OutputCoordinateSystemNotSupportedException*, std::exception*>);
static_assert(!std::is_base_of_v<Core::Exception, OutputCoordinateSystemNotSupportedException>);

template <typename FileException>
class FileExceptions : public ::testing::Test {};
using FileExceptionTypes = ::testing::Types<FileDoNotExistsException, FileIsEmptyException>;
TYPED_TEST_SUITE(FileExceptions, FileExceptionTypes);

TYPED_TEST(FileExceptions, CarryTheirMessageThroughCopiesAndMovesWithoutStealing)
{
    TypeParam original("/data/a.sbet");
    TypeParam copy(original);
    TypeParam moved(std::move(original));
    EXPECT_STREQ(copy.what(), "/data/a.sbet");
    EXPECT_STREQ(moved.what(), "/data/a.sbet");
    EXPECT_STREQ(original.what(), "/data/a.sbet"); // NOLINT(bugprone-use-after-move): a move copies

    TypeParam assigned("other");
    assigned = std::move(moved);
    EXPECT_STREQ(assigned.what(), "/data/a.sbet");
    EXPECT_STREQ(moved.what(), "/data/a.sbet"); // NOLINT(bugprone-use-after-move)
}

TEST(OutputCoordinateSystemNotSupportedException, AMoveTakesTheMessageAndEmptiesTheSource)
{
    OutputCoordinateSystemNotSupportedException source("abc");
    OutputCoordinateSystemNotSupportedException copy(source);
    EXPECT_STREQ(copy.what(), "abc");
    OutputCoordinateSystemNotSupportedException target(std::move(source));
    EXPECT_STREQ(target.what(), "abc");
    EXPECT_STREQ(source.what(), ""); // NOLINT(bugprone-use-after-move): a move empties the source
    OutputCoordinateSystemNotSupportedException assigned;
    EXPECT_STREQ(assigned.what(), "");
    assigned = std::move(target);
    EXPECT_STREQ(assigned.what(), "abc");
    EXPECT_STREQ(target.what(), ""); // NOLINT(bugprone-use-after-move)
}

} // namespace
} // namespace Kelvo::Geodesy

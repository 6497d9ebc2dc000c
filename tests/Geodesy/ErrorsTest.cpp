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

#include <string>
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
    AssertionRecorder recorder;
    const auto identifier = ErrorIdentifierFactory::create(PackageIdentifier::GEODESY, 0);
    ASSERT_NE(identifier, nullptr);
    EXPECT_EQ(identifier->getPackage(), PackageIdentifier::GEODESY);
    EXPECT_EQ(static_cast<unsigned>(identifier->getPackage()), 24u);
    EXPECT_EQ(identifier->getErrorId(), 0u);
    EXPECT_NE(dynamic_cast<const ErrorManagement::PackageIdEnumErrorIdentifier*>(identifier.get()), nullptr);
    EXPECT_TRUE(recorder.records().empty());
}

TEST(GeodesyErrors, NumbersFromLastErrorOnAreReportedButStillMade)
{
    EXPECT_EQ(ErrorManagement::LAST_ERROR, 1u);
    AssertionRecorder recorder;
    const auto identifier = ErrorIdentifierFactory::create(PackageIdentifier::GEODESY, 1);
    ASSERT_NE(identifier, nullptr);
    EXPECT_EQ(identifier->getErrorId(), 1u);
    EXPECT_THAT(recorder.messages(),
                ElementsAre(Testing::assertText("errorId < Kelvo::Geodesy::ErrorManagement::GeodesyErrors::LAST_ERROR")));
    EXPECT_EQ(recorder.records()[0].file, "src/Geodesy/src/Geodesy/ErrorManagement/GeodesyErrors.cpp");
}

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

TYPED_TEST(FileExceptions, AreCaughtAsTheFamilyBaseException)
{
    try {
        throw TypeParam("x");
    } catch (const Core::Exception& caught) {
        EXPECT_STREQ(caught.what(), "x");
    }
}

TEST(FileExceptions, KeepTheirOwnTypeIdentity)
{
    bool caughtEmpty = false;
    try {
        throw FileIsEmptyException("e");
    } catch (const FileDoNotExistsException&) {
        FAIL() << "caught as the wrong type";
    } catch (const FileIsEmptyException&) {
        caughtEmpty = true;
    }
    EXPECT_TRUE(caughtEmpty);
}

TEST(OutputCoordinateSystemNotSupportedException, MovesItsMessageAndIsNotAFamilyException)
{
    OutputCoordinateSystemNotSupportedException source("abc");
    EXPECT_STREQ(source.what(), "abc");
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

    bool caughtAsStd = false;
    try {
        try {
            throw OutputCoordinateSystemNotSupportedException();
        } catch (const Core::Exception&) {
            FAIL() << "must not derive from Core::Exception";
        }
    } catch (const std::exception& caught) {
        caughtAsStd = std::string(caught.what()).empty();
    }
    EXPECT_TRUE(caughtAsStd);
}

} // namespace
} // namespace Kelvo::Geodesy

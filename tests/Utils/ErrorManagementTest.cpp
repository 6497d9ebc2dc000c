// SPDX-License-Identifier: MIT
#include "Utils/ErrorManagement/Error.h"
#include "Utils/ErrorManagement/ErrorIdentifierFactory.h"
#include "Utils/ErrorManagement/ReturnStatus.h"
#include "Utils/FileHelper.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

namespace Kelvo::Utils::ErrorManagement {
namespace {

constexpr auto testPackage = static_cast<PackageIdentifier>(99);

struct TestIdentifier : ErrorIdentifier {
    explicit TestIdentifier(unsigned int id)
        : ErrorIdentifier(testPackage)
        , id(id)
    {
    }
    std::uint32_t getErrorId() const override { return id; }
    unsigned int id;
};

TEST(ErrorIdentifierFactory, CreatesThroughTheRegisteredConstructorOnlyWhileRegistered)
{
    EXPECT_FALSE(ErrorIdentifierFactory::isRegistered(testPackage));
    EXPECT_EQ(ErrorIdentifierFactory::create(testPackage, 3), nullptr);

    ErrorIdentifierFactory::registerConstructor(testPackage,
                                                [](unsigned int id) { return std::make_unique<TestIdentifier>(id); });
    const auto identifier = ErrorIdentifierFactory::create(testPackage, 3);
    ASSERT_NE(identifier, nullptr);
    EXPECT_EQ(identifier->getPackage(), testPackage);
    EXPECT_EQ(identifier->getErrorId(), 3u);

    ErrorIdentifierFactory::unregisterConstructor(testPackage);
    EXPECT_FALSE(ErrorIdentifierFactory::isRegistered(testPackage));
    EXPECT_EQ(ErrorIdentifierFactory::create(testPackage, 3), nullptr);
}

TEST(ReturnStatus, DescribesPackageAndErrorNumber)
{
    EXPECT_EQ(ReturnStatus(Error(std::make_shared<TestIdentifier>(7))).toString(), "package 99, error 7");
    EXPECT_EQ(ReturnStatus(Error(nullptr)).toString(), "unknown error");
}

TEST(FileHelper, ReportsSystemErrorsInTheSystemsWords)
{
    EXPECT_EQ(FileHelper::errorString(ENOENT), "No such file or directory");
    EXPECT_EQ(FileHelper::toString("/a b/c.sbet"), "/a b/c.sbet");

    errno = EACCES;
    const std::system_error error = FileHelper::makeSystemError("cannot read x");
    EXPECT_EQ(error.code(), std::error_code(EACCES, std::generic_category()));
    EXPECT_EQ(std::string(error.what()), "cannot read x: Permission denied");
}

} // namespace
} // namespace Kelvo::Utils::ErrorManagement

#include "usb/LibusbResult.h"

#include <gtest/gtest.h>
#include <libusb.h>

#include <set>

namespace nivor {
namespace {

struct Row {
    int code;
    UsbResult result;
};

constexpr Row errors[] = {
    {LIBUSB_SUCCESS, UsbResult::Success},
    {LIBUSB_ERROR_IO, UsbResult::IOError},
    {LIBUSB_ERROR_INVALID_PARAM, UsbResult::BadArgument},
    {LIBUSB_ERROR_ACCESS, UsbResult::NotPrivileged},
    {LIBUSB_ERROR_NO_DEVICE, UsbResult::NoDevice},
    {LIBUSB_ERROR_NOT_FOUND, UsbResult::NotFound},
    {LIBUSB_ERROR_BUSY, UsbResult::ExclusiveAccess},
    {LIBUSB_ERROR_TIMEOUT, UsbResult::TransactionTimeout},
    {LIBUSB_ERROR_OVERFLOW, UsbResult::Overrun},
    {LIBUSB_ERROR_PIPE, UsbResult::PipeStalled},
    {LIBUSB_ERROR_INTERRUPTED, UsbResult::Aborted},
    {LIBUSB_ERROR_NO_MEM, UsbResult::NoMemory},
    {LIBUSB_ERROR_NOT_SUPPORTED, UsbResult::Unsupported},
    {LIBUSB_ERROR_OTHER, UsbResult::Error},
};

constexpr Row statuses[] = {
    {LIBUSB_TRANSFER_COMPLETED, UsbResult::Success},
    {LIBUSB_TRANSFER_ERROR, UsbResult::IOError},
    {LIBUSB_TRANSFER_TIMED_OUT, UsbResult::TransactionTimeout},
    {LIBUSB_TRANSFER_CANCELLED, UsbResult::Aborted},
    {LIBUSB_TRANSFER_STALL, UsbResult::PipeStalled},
    {LIBUSB_TRANSFER_NO_DEVICE, UsbResult::NoDevice},
    {LIBUSB_TRANSFER_OVERFLOW, UsbResult::Overrun},
};

TEST(LibusbResultTest, EachErrorHasAResultOfItsOwn)
{
    std::set<UsbResult> seen;
    for (const Row& row : errors) {
        EXPECT_EQ(resultOfLibusbError(row.code), row.result) << libusb_error_name(row.code);
        seen.insert(row.result);
    }
    EXPECT_EQ(seen.size(), std::size(errors));
}

TEST(LibusbResultTest, EachTransferStatusHasAResultOfItsOwn)
{
    std::set<UsbResult> seen;
    for (const Row& row : statuses) {
        EXPECT_EQ(resultOfTransferStatus(row.code), row.result) << row.code;
        seen.insert(row.result);
    }
    EXPECT_EQ(seen.size(), std::size(statuses));
}

TEST(LibusbResultTest, CountsAreASuccess)
{
    EXPECT_EQ(resultOfLibusbError(1), UsbResult::Success);
    EXPECT_EQ(resultOfLibusbError(65535), UsbResult::Success);
}

TEST(LibusbResultTest, WhatNobodyKnowsIsAnError)
{
    EXPECT_EQ(resultOfLibusbError(-1000), UsbResult::Error);
    EXPECT_EQ(resultOfTransferStatus(-1), UsbResult::Error);
    EXPECT_EQ(resultOfTransferStatus(1000), UsbResult::Error);
}

TEST(LibusbResultTest, TheCodesAreThoseOfTheLog)
{
    EXPECT_EQ(codeOf(resultOfLibusbError(LIBUSB_ERROR_ACCESS)), 0xE00002C1U);
    EXPECT_EQ(codeOf(resultOfLibusbError(LIBUSB_ERROR_BUSY)), 0xE00002C5U);
    EXPECT_EQ(codeOf(resultOfLibusbError(LIBUSB_ERROR_NO_DEVICE)), 0xE00002C0U);
    EXPECT_EQ(codeOf(resultOfLibusbError(LIBUSB_ERROR_TIMEOUT)), 0xE0004051U);
}

}  // namespace
}  // namespace nivor

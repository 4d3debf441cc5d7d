#include <gtest/gtest.h>

#include "support/daemon.h"
#include "support/files.h"
#include "support/gateway.h"
#include "support/hnc_listener.h"
#include "support/wire.h"

static constexpr uint32_t kGetCapable = 286;
static constexpr uint32_t kSetNonAssocEnable = 287;
static constexpr uint32_t kGetNonAssocEnable = 288;
static constexpr uint32_t kSetMac = 289;
static constexpr uint32_t kGetMac = 290;
static constexpr uint32_t kGetReport = 292;

static const std::string kProber = "02:00:5e:20:00:01";

// An integer getter's reply.
static std::string integer(uint32_t code, uint32_t value) {
  return xdr_word(code) + xdr_word(4) + xdr_word(value) + std::string(16, '\0');
}

// Code, no words, 900 bytes.
static std::string report_reply(uint32_t code, std::string record) {
  record.resize(900, '\0');
  return xdr_word(code) + xdr_word(0) + xdr_word(900) + record;
}

TEST(NonAssoc, NewestProbeOfTheRequestedStationIsReported) {
  start_daemon({"TZ=UTC0"});
  EXPECT_EQ(call_for_payload(kGetCapable, xdr_word(1)), integer(0, 1));
  EXPECT_EQ(call_for_payload(kGetReport, xdr_word(1)), report_reply(0, ""));
  EXPECT_EQ(call_for_code(kSetNonAssocEnable, xdr_word(1) + xdr_word(1)), 0);
  EXPECT_EQ(call_for_payload(kGetNonAssocEnable, xdr_word(1)), integer(1, 1));
  EXPECT_EQ(call_for_code(kSetMac, xdr_word(1) + xdr_text(kProber)), 0);
  EXPECT_EQ(call_for_payload(kGetMac, xdr_word(1)),
            xdr_word(1) + xdr_word(0) + xdr_word(18) + kProber + std::string(3, '\0'));
  EXPECT_EQ(run("gwbox status --json | jq -r '.radios.ra0.watched[]'"), kProber + "\n");
  // Valid, RSSI -66, 2026-03-01 18:30:05, the address.
  EXPECT_EQ(call_for_payload(kGetReport, xdr_word(1)),
            report_reply(0, little_endian(1) + little_endian(0xFFFFFFBE) +
                                little_endian(1772389805) + kProber));
  EXPECT_EQ(call_for_payload(kGetReport, xdr_word(9)), report_reply(0, ""));
}

TEST(NonAssoc, DriverThatCannotOrRefuses) {
  start_daemon();
  run("gwbox set radio ra8 nonassoc=false");
  EXPECT_EQ(call_for_payload(kGetCapable, xdr_word(9)), integer(0, 0));
  EXPECT_EQ(call_for_code(kSetNonAssocEnable, xdr_word(9) + xdr_word(1)), -1);
  EXPECT_EQ(profile_value("/tmp/mt76xx_5.dat", "NonAssocRptEnable"), "0");
  EXPECT_EQ(call_for_payload(kGetNonAssocEnable, xdr_word(9)), integer(1, 0));
  EXPECT_EQ(call_for_code(kSetMac, xdr_word(9) + xdr_text(kProber)), -1);
  EXPECT_EQ(call_for_payload(kGetReport, xdr_word(9)), report_reply(0xFFFFFFFF, ""));
  EXPECT_EQ(call_for_payload(kGetCapable, xdr_word(17)), integer(0xFFFFFFFF, 0));
}

TEST(NonAssoc, KeysThatAreMissing) {
  for (const char* profile : {"/tmp/mt76xx_24.dat", "/tmp/mt76xx_5.dat"}) {
    run(std::string("sed -i '/^NonAssoc/d' ") + profile);
  }
  start_daemon();
  EXPECT_EQ(call_for_payload(kGetNonAssocEnable, xdr_word(1)), integer(0, 0));
  EXPECT_EQ(call_for_payload(kGetMac, xdr_word(9)),
            xdr_word(0xFFFFFFFF) + xdr_word(0) + xdr_word(18) + std::string(20, '\0'));
  EXPECT_EQ(call_for_payload(kGetReport, xdr_word(1)), report_reply(0xFFFFFFFF, ""));
}

// What a rule is given to report to, and the tables of rules that the files of this folder hold.
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "document/check/check.h"

namespace reedid::document::check {

class Report {
 public:
  Report(const Rule& rule, std::vector<Finding>& findings) : rule_(rule), findings_(findings) {}

  // The finding stays valid until the next one.
  Finding& Add(const Place& place, std::string values) {
    findings_.push_back({&rule_, rule_.severity, place, std::move(values)});
    return findings_.back();
  }

 private:
  const Rule& rule_;
  std::vector<Finding>& findings_;
};

std::span<const Rule> IdentityRules();
std::span<const Rule> TimingRules();
std::span<const Rule> SizeRules();
std::span<const Rule> VideoRules();
std::span<const Rule> LimitRules();
std::span<const Rule> HdmiRules();
std::span<const Rule> HdmiForumRules();
std::span<const Rule> AudioRules();
std::span<const Rule> HdrAndColorRules();
std::span<const Rule> DisplayIdRules();
std::span<const Rule> StructureRules();
std::span<const Rule> CtaStructureRules();

}  // namespace reedid::document::check

#include <concepts>

#include "capture/file/settings_text.h"
#include "interface/scanner_settings.h"
#include "tests/documents/table.h"
#include "transport/acquisition_records.h"

namespace documents {
namespace {

using namespace pmddb832;

std::string TypeOf(const SettingsField& field) {
  switch (capture::FormOf(field)) {
    case capture::ValueForm::kUnsigned:
      return "u" + std::to_string(8 * field.width);
    case capture::ValueForm::kSigned:
      return "i" + std::to_string(8 * field.width);
    case capture::ValueForm::kReal:
      return "f64";
    case capture::ValueForm::kText:
      return "char[" + std::to_string(field.width) + "]";
    case capture::ValueForm::kPointer:
      return "pointer";
    default:
      return "u8[" + std::to_string(field.width) + "]";
  }
}

template <std::unsigned_integral Member>
std::string TypeOf() {
  return "u" + std::to_string(8 * sizeof(Member));
}

Table Settings() {
  Table table{"settings-record", {"Member", "Offset", "Type"}, {}};
  for (const SettingsField& field : kScannerSettingsFields) {
    if (field.name.starts_with("reserved")) continue;
    table.rows.push_back({Code(field.name), std::to_string(field.offset), TypeOf(field)});
  }
  return table;
}

#define DOCUMENTS_ROW(record, member) \
  { Code(#member), std::to_string(offsetof(record, member)), TypeOf<decltype(record::member)>() }

Table Setup() {
  return {
      "acquisition-setup",
      {"Member", "Offset", "Type"},
      {DOCUMENTS_ROW(AcquisitionSetup, status), DOCUMENTS_ROW(AcquisitionSetup, lineBytes),
       DOCUMENTS_ROW(AcquisitionSetup, widthPixels), DOCUMENTS_ROW(AcquisitionSetup, heightLines)}};
}

Table Band() {
  return {"acquisition-band",
          {"Member", "Offset", "Type"},
          {DOCUMENTS_ROW(AcquisitionBand, status), DOCUMENTS_ROW(AcquisitionBand, done),
           DOCUMENTS_ROW(AcquisitionBand, lines), DOCUMENTS_ROW(AcquisitionBand, bytes)}};
}

#undef DOCUMENTS_ROW

}  // namespace

std::vector<Table> RecordTables() {
  return {Settings(), Setup(), Band()};
}

}  // namespace documents

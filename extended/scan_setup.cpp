#include "extended/ext_commands.h"
#include "extended/ext_scan_cmd.h"
#include "extended/parameters.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "wire/commands.h"
#include "wire/parameter_fields.h"

namespace pmddb832 {

void ExtScanCmd::InitAcquire(Call& call, std::uint32_t outputFormat, ProgressCallback progress,
                             AcquisitionSetup* setup) {
  const TraceScope trace{"Extcmd::InitAcquire"};
  plan_ = PlanScan(plan_, call.settings, outputFormat);
  stream_.SetUp();
  progress_ = progress;
  const ErrorCode refused = SetUpError(plan_);
  if (refused != kNoError) Fail(refused);
  setup->status = refused == kNoError ? kAcquisitionGoOn : kAcquisitionFailed;
  setup->lineBytes = plan_.hostLineBytes;
  setup->widthPixels = plan_.width;
  setup->heightLines = plan_.height;
}

std::uint32_t ExtScanCmd::SetupScanParameter(Call& call) {
  const TraceScope trace{"Extcmd::SetupScanParameter"};
  if (facts_.identity.basicResolution == 0) return 0;
  PutOptions(*work_.parameters, call.settings, plan_, facts_.highBitDepth);
  if (!SendGamma(call) || !SendColourCorrection(call)) return 0;
  PutFilters(*work_.parameters, call.settings);
  return SendParameters(call) ? 1 : 0;
}

bool ExtScanCmd::SendGamma(Call& call) {
  const ScannerSettings& settings = call.settings;
  if (settings.customGamma == 0) {
    PutGammaAndBrightness(*work_.parameters, settings, SetGamma(settings.gamma));
    return true;
  }
  const auto send = [&](std::uint8_t channel, std::span<const std::uint8_t> table) {
    return Extcmd::SendCorrectionData(*this, call, esc::kGammaTable, channel, table) != 0;
  };
  PutGammaOfTables(*work_.parameters, settings);
  if (settings.monoScan != 0) return send('M', settings.gammaTableR);
  return send('R', settings.gammaTableR) && send('G', settings.gammaTableG) &&
         send('B', settings.gammaTableB);
}

bool ExtScanCmd::SendColourCorrection(Call& call) {
  const ScannerSettings& settings = call.settings;
  if (settings.monoScan != 0) return true;
  const bool correct = settings.colorCorrection != 0;
  if (correct && Extcmd::SendCorrectionData(*this, call, esc::kColorMatrix, kNoPrefix,
                                            settings.colorMatrix) == 0) {
    return false;
  }
  Put(*work_.parameters, parameter::kColorCorrection, correct ? 1 : 0);
  return true;
}

bool ExtScanCmd::SendParameters(Call& call) {
  ParameterBlock& block = *work_.parameters;
  const bool planned =
      PlanTransfer(plan_, call.settings, facts_, Get(block, parameter::kBitsPerSample));
  call.settings.areaLeftPx = plan_.left;
  call.settings.areaTopPx = plan_.top;
  if (!planned) return false;
  PutArea(block, plan_);
  if (Extcmd::SendFSCode(*this, call, fs::kParameters) == 0 || CheckAck(call) == 0) return false;
  return Wire()->Write(call, block) != 0 && CheckAck(call) != 0;
}

}  // namespace pmddb832

#pragma once

#include <string_view>

// Names that the family of import and export filters shares. This program uses the identifier of the MSPDI export and
// the key of the project's name.

inline constexpr std::string_view kMSPImportMSPDIFilter = "com.korvella.Korvella2.MSPImportMSPDI";
inline constexpr std::string_view kMSPImportMPPFilter = "com.korvella.Korvella2.MSPImportMPP";
inline constexpr std::string_view kMSPExportMSPDIFilter = "com.korvella.Korvella2.MSPExportMSPDI";
inline constexpr std::string_view kMSPExportMPPFilter = "com.korvella.Korvella2.MSPExportMPP";

inline constexpr const char* kInfoMSPDIProjectName = "InfoMSPDIProjectName";
inline constexpr const char* kInfoMSPDIBaselineNumber = "InfoMSPDIBaselineNumber";
inline constexpr const char* kInfoKVDXScenarioName = "InfoKVDXScenarioName";
inline constexpr const char* kInfoMPPTemplateUrl = "InfoMPPTemplateUrl";
inline constexpr const char* kInfoKVDXTemplateUrl = "InfoKVDXTemplateUrll";  // spelled so on purpose

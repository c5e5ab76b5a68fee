// What translators have to put right in catalogs: those of a folder against each other and against
// what the programs ask for.

#ifndef TOOLS_DOCTOR_CATALOGFAULTS_H_
#define TOOLS_DOCTOR_CATALOGFAULTS_H_

#include <string>
#include <vector>

#include "tools/doctor/CatalogFile.h"

namespace doctor {

// Looks at all files NAME_LANGUAGE.txt in the folders and below: resources where NAME holds
// "Resource", messages elsewhere; NAME_EN.txt is what the others are compared with. Catalogs whose
// name begins with "Branding" override the others. In the order of files and lines.
std::vector<CatalogFault> FindCatalogFaults(const std::vector<std::string>& folders);

// Prints the faults of a folder, or of the installation when it is empty: "FILE:LINE: FAULT" each.
// The exit status: 0 when there are none, else 1.
int PrintCatalogFaults(const std::string& folder);

}  // namespace doctor

#endif  // TOOLS_DOCTOR_CATALOGFAULTS_H_

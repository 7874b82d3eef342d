#include "bim/conversionvocabulary.h"

namespace NelvoPlugin {

const QString BVConverter = QStringLiteral("BVConverter");
const QString convertState = QStringLiteral("convertState");
const QString convertPds = QStringLiteral("convertPds");
const QString convertVlg = QStringLiteral("convertVlg");
const QString convertDwg = QStringLiteral("convertDwg");
const QString convertFBX = QStringLiteral("convertFBX");
const QString dwgFile = QStringLiteral("dwgFile");
const QString fbxFile = QStringLiteral("fbxFile");
const QString pdsFile = QStringLiteral("pdsFile");
const QString gltfFile = QStringLiteral("gltfFile");
const QString levelModel = QStringLiteral("levelModel");
const QString levelPerformanceFirst = QStringLiteral("levelPerformanceFirst");
const QString outlineModel = QStringLiteral("outlineModel");
const QString bimGuid = QStringLiteral("bimGuid");
const QString compGuid = QStringLiteral("compGuid");
const QString asComp = QStringLiteral("asComp");
const QString uid = QStringLiteral("uid");
const std::wstring editor_import_source_type = L"editor_import_source_type";

} // namespace NelvoPlugin

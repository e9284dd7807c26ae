#pragma once
// The texts that the library carries. Each is a file below scripts/, embedded when the library is built.

#include <string_view>

namespace vesk::scripts {

extern const std::string_view attributeEditorMel;      ///< Attribute Editor templates and shared MEL
extern const std::string_view displayDriverManagerMel; ///< displayDriver manager procedures
extern const std::string_view toolsPython;             ///< tool classes, among them `vesk`
extern const std::string_view iconsDesignerPython;
extern const std::string_view iconsDesignerUi;
extern const std::string_view iconsDesignerHelp;
extern const std::string_view iconsConfiguration; ///< the default icons.cfg
extern const std::string_view slidersManagerPython;
extern const std::string_view slidersManagerHelp;
extern const std::string_view displayDriverManagerHelp;
extern const std::string_view scriptsManagerPython;

} // namespace vesk::scripts

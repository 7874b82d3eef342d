// A plug-in of clang that `tools/lint` loads into clang-tidy. clang-tidy 14 matches its checks against every
// declaration of the system's headers too, which takes five times as long as the parsing, and drops what it
// finds there. This narrows the traversal to the project's own declarations, as clangd does.

#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/Frontend/FrontendPluginRegistry.h>

#include <memory>
#include <string>
#include <vector>

namespace {

class OwnScope final : public clang::ASTConsumer
{
public:
    void HandleTranslationUnit(clang::ASTContext& context) override
    {
        std::vector<clang::Decl*> own;
        for (clang::Decl* declaration : context.getTranslationUnitDecl()->decls()) {
            if (!context.getSourceManager().isInSystemHeader(declaration->getLocation()))
                own.push_back(declaration);
        }
        context.setTraversalScope(own);
    }
};

class NarrowScope final : public clang::PluginASTAction
{
protected:
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance& /*compiler*/,
                                                          llvm::StringRef /*file*/) override
    {
        return std::make_unique<OwnScope>();
    }
    bool ParseArgs(const clang::CompilerInstance& /*compiler*/,
                   const std::vector<std::string>& /*arguments*/) override
    {
        return true;
    }
    ActionType getActionType() override { return AddBeforeMainAction; }
};

const clang::FrontendPluginRegistry::Add<NarrowScope> registered("own-scope", "leaves out system headers");

} // namespace

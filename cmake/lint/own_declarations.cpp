// SPDX-License-Identifier: Apache-2.0
// A plug-in of clang-tidy, for scripts/lint: lets the checks walk through the declarations in our
// own files alone. Without it every check walks through all of Qt, Boost and OpenCV for every file,
// which takes most of the time and finds nothing: what stands in a system header is never reported.
//
// Where a declaration stands is where its macro is used, so what TEST or Q_OBJECT make of our files
// is ours; so are all instantiations of our templates. What the preprocessor sees is not touched.
// Declarations of others can still be looked up, they only aren't visited for their own sake.
#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/Basic/SourceManager.h>
#include <clang/Frontend/CompilerInstance.h>
#include <clang/Frontend/FrontendPluginRegistry.h>

namespace {

class OwnDeclarations : public clang::ASTConsumer {
 public:
  void HandleTranslationUnit(clang::ASTContext& context) override {
    std::vector<clang::Decl*> own;
    for (clang::Decl* declaration : context.getTranslationUnitDecl()->decls()) {
      const clang::SourceLocation location = declaration->getLocation();
      if (location.isValid() && !context.getSourceManager().isInSystemHeader(location)) {
        own.push_back(declaration);
      }
    }
    context.setTraversalScope(own);
  }
};

class BeforeTheChecks : public clang::PluginASTAction {
 public:
  std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance&,
                                                        llvm::StringRef) override {
    return std::make_unique<OwnDeclarations>();
  }
  bool ParseArgs(const clang::CompilerInstance&, const std::vector<std::string>&) override {
    return true;
  }
  ActionType getActionType() override { return AddBeforeMainAction; }
};

const clang::FrontendPluginRegistry::Add<BeforeTheChecks> kPlugin(
    "own-declarations", "limits the checks to the declarations in our own files");

}  // namespace

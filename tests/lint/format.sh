#!/usr/bin/env bash
# Every source file is as clang-format leaves it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h' | xargs clang-format-14 --dry-run --Werror

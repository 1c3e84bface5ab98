#include "STemplateFile.h"

#include <cerrno>
#include <map>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "CommandTrust.h"

namespace {

const char* const kHTMLPage = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>^title^</title>
<style>
body { font-family: sans-serif; max-width: 44em; margin: 2em auto; padding: 0 1em; line-height: 1.5; color: #222; }
nav ol { list-style: none; padding: 0; margin: 0; }
nav li { display: inline; }
nav li + li::before { content: " / "; }
nav.siblings, footer { font-size: 0.9em; color: #555; }
h1 { margin-top: 0.5em; }
</style>
</head>
<body>
<nav class="up">^ancestors("<ol>","<li>","</li>","</ol>")^</nav>
<h1>^title^</h1>
<main>
^text^
</main>
^if(^childlinks^)^<section class="children">
<h2>Contents</h2>
^childlinks("<ul>","<li>","</li>","</ul>")^
</section>
^endif^^if(^exists(basiclinks)^)^<section class="links">
<h2>Links</h2>
^outboundlinks("<ul>","<li>","</li>","</ul>")^
</section>
^endif^^if(^exists(inboundlinks)^)^<section class="backlinks">
<h2>Linked from</h2>
^inboundlinks("<ul>","<li>","</li>","</ul>")^
</section>
^endif^<footer>^doctitle^</footer>
</body>
</html>
)";

const char* const kMarkdownPage = R"(# ^title^

^text^
^if(^childlinks^)^
## Contents

^children(markdown-item)^^endif^)";

const char* const kMarkdownItem = "- [^title^](^url^)\n";

const char* const kOutline = "^descendants(outline-item)^";

const char* const kOutlineItem = "^indent^^title^\n";

const char* const kOPML = R"(<?xml version="1.0" encoding="UTF-8"?>
<opml version="2.0">
<head>
<title>^opmlencode(^doctitle^)^</title>
</head>
<body>
^children(opml-item)^</body>
</opml>
)";

const char* const kOPMLItem =
    "<outline text=\"^opmlencode(^title^)^\"^if(^text^)^ _note=\"^opmlencode(^text(plain)^)^\"^endif^>\n"
    "^children(opml-item)^</outline>\n";

const std::map<std::string, const char*>& Templates() {
    static const std::map<std::string, const char*> templates = {
        {"html", kHTMLPage},       {"markdown", kMarkdownPage}, {"markdown-item", kMarkdownItem},
        {"outline", kOutline},     {"outline-item", kOutlineItem}, {"opml", kOPML},
        {"opml-item", kOPMLItem},
    };
    return templates;
}

}  // namespace

std::string STemplateFile::ReadTemplateFile(const std::string& path) {
    // A document is code from whoever wrote it, and what a template reads
    // ends up in pages that may be published: files are read only when the
    // user allowed the document outside programs, which could read them
    // anyway.
    if (!CommandTrust::Allowed())
        return std::string();
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return std::string();
    struct stat info;
    std::string text;
    if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_size <= kMaxFileSize) {
        text.resize(static_cast<size_t>(info.st_size));
        size_t got = 0;
        while (got < text.size()) {
            ssize_t n = ::read(fd, text.data() + got, text.size() - got);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                break;
            got += static_cast<size_t>(n);
        }
        text.resize(got);
    }
    ::close(fd);
    return text;
}

std::string STemplateFile::BuiltInTemplate(const std::string& name) {
    if (name.empty())
        return std::string();
    if (name[0] == '/')
        return ReadTemplateFile(name);
    auto found = Templates().find(name);
    return found == Templates().end() ? std::string() : std::string(found->second);
}

std::vector<std::string> STemplateFile::Names() { return {"html", "markdown", "outline", "opml"}; }

std::string STemplateFile::ExtensionFor(const std::string& name) {
    if (name == "html")
        return ".html";
    if (name == "markdown")
        return ".md";
    return std::string();
}

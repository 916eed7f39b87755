# SPDX-License-Identifier: MIT
# Reads CHANGELOG.md and writes its releases as metainfo shows them (-v form=metainfo) or as Debian's
# changelog (-v form=debian -v package=NAME -v maintainer=WHO). A release begins "## VERSION - DATE" and
# holds paragraphs and lists; what is under any other heading is left out.

function escaped(text) {
    gsub(/`/, "", text)
    if (form == "metainfo") {
        gsub(/&/, "\\&amp;", text)
        gsub(/</, "\\&lt;", text)
        gsub(/>/, "\\&gt;", text)
    }
    return text
}

# Ends the item or the paragraph that was read, and the list unless another item follows.
function end_text(list_goes_on) {
    if (form == "metainfo" && text != "")
        printf is_item ? "          <li>%s</li>\n" : "        <p>%s</p>\n", text
    text = ""
    if (form == "metainfo" && in_list && !list_goes_on)
        print "        </ul>"
    in_list = in_list && list_goes_on
}

function end_release() {
    end_text(0)
    if (version != "" && form == "metainfo")
        print "      </description>\n    </release>"
    if (version != "" && form == "debian") {
        command = "LC_ALL=C date -u -R -d " date
        command | getline day
        close(command)
        printf "\n -- %s  %s\n", maintainer, day
    }
    version = ""
}

/^#/ { end_release() }

/^## [0-9.]+ - [0-9-]+$/ {
    version = $2
    date = $4
    if (form == "metainfo")
        printf "    <release version=\"%s\" date=\"%s\">\n      <description>\n", version, date
    else
        printf "%s%s (%s-1) unstable; urgency=medium\n\n", any++ ? "\n" : "", package, version
    next
}

version == "" || /^#/ { next }
/^$/ { end_text(0); next }

/^- / {
    end_text(1)
    if (form == "metainfo" && !in_list)
        print "        <ul>"
    in_list = is_item = 1
}

{
    if (!in_list) is_item = 0
    sub(/^(- |  )/, "")
    line = escaped($0)
    if (form == "debian")
        print (text == "" ? "  * " : "    ") line
    text = text (text == "" ? "" : " ") line
}

END { end_release() }

# Turns the results of bench/run.sh into one Markdown table.
# Inputs: the Google Benchmark JSON of lumarex-filebench, then the output of
# lumarex-startup-bench, then that of bench/lxconfig/startup.sh; the editor's callgrind totals
# come in as variables.

function duration(ns) {
    if (ns >= 1e6) return sprintf("%.2f ms", ns / 1e6)
    if (ns >= 1e3) return sprintf("%.2f µs", ns / 1e3)
    return sprintf("%.1f ns", ns)
}

function field(line, key,    parts) {
    match(line, key "=[0-9.]+")
    split(substr(line, RSTART, RLENGTH), parts, "=")
    return parts[2]
}

FNR == NR && /"name":/ {
    name = $0
    gsub(/.*"name": "|_median",?$|",?$/, "", name)
    median = ($0 ~ /_median"/)
}
FNR == NR && /"cpu_time":/ && median {
    value = $2
    sub(/,$/, "", value)
    cpu[name] = value
}
FNR == NR && /"time_unit":/ && median {
    unit = $2
    gsub(/[",]/, "", unit)
    scale = unit == "us" ? 1e3 : unit == "ms" ? 1e6 : 1
    cpu[name] *= scale
}
FILENAME ~ /lxconfig-startup/ {
    lxconfigInstructions = field($0, "lxconfig")
    cmpInstructions = field($0, "cmp")
    next
}
FNR != NR {
    paint[$1] = field($0, "first-paint-ms")
    rss[$1] = field($0, "peak-rss-kb")
}

END {
    floor = cpu["floorMemcpy"]
    split("floorMemcpy encode decode checksum save load", order, " ")
    label["floorMemcpy"] = "memcpy of the 167-byte record (floor)"
    label["encode"] = "encode: every field set, then seal"
    label["decode"] = "decode: every field read"
    label["checksum"] = "CRC-16 of 165 bytes"
    label["save"] = "save command without dialog and write (recordFromForm)"
    label["load"] = "load command after its read (restoreFromFileBytes)"

    printf "| File format and commands (median CPU time of %d repetitions) | Time | Ratio to floor |\n", repetitions
    print "|---|---:|---:|"
    for (i = 1; i <= 6; ++i) {
        key = order[i]
        printf "| %s | %s | %.1f |\n", label[key], duration(cpu[key]), cpu[key] / floor
    }
    print ""
    printf "| Start-up to first paint, offscreen (median of %d alternating runs) | lumarex-config | bare QMainWindow 803x567 | Ratio |\n", runs
    print "|---|---:|---:|---:|"
    printf "| wall time | %.1f ms | %.1f ms | %.2f |\n", paint["editor"], paint["bare"],
        paint["editor"] / paint["bare"]
    printf "| instructions (callgrind) | %.1f M | %.1f M | %.2f |\n",
        editorInstructions / 1e6, bareInstructions / 1e6, editorInstructions / bareInstructions
    printf "| peak resident memory (VmHWM) | %.1f MiB | %.1f MiB | %.2f |\n",
        rss["editor"] / 1024, rss["bare"] / 1024, rss["editor"] / rss["bare"]
    print ""
    print "| lxconfig start-up (callgrind instructions) | lxconfig check F | cmp F F | Ratio |"
    print "|---|---:|---:|---:|"
    printf "| one 167-byte record | %.2f M | %.2f M | %.2f |\n", lxconfigInstructions / 1e6,
        cmpInstructions / 1e6, lxconfigInstructions / cmpInstructions
}

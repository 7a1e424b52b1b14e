// Sorvik's interactive chart page: draws a chart exported by Sorvik as inline SVG, the way the
// desktop viewer draws it (rings 30 units wide, single-child chains drawn as one, children below
// the minimum share gathered in a grey "N others", colours fixed on the whole tree), and lets the
// reader step in and out, search, and change the levels, the minimum share and the sample.
// The logic is plain functions that Node.js tests call; the page part runs only in a browser.
"use strict";

(function (root, factory) {
    const api = factory();
    if (typeof module === "object" && module.exports) {
        module.exports = api;
    } else {
        root.SorvikChart = api;
        if (typeof document !== "undefined") {
            api.startPage(document, root);
        }
    }
})(typeof self !== "undefined" ? self : this, function () {
    const RING = 30;
    const FONT_SIZE = 11;
    const PADDING = 1.5;
    // Labels of leaves may run this many rings beyond the outermost ring.
    const LABEL_BAND = 1.5;
    const SMALLEST_PIXELS = 7;
    const WIDEST_RADIAL = Math.PI / 2;
    const ARC_PREFERENCE = 0.85;
    const FULL = 2 * Math.PI;
    const CHAIN_SEPARATOR = " \u203a ";

    // The tree of the page's data: parents, children in order, colours and the samples' counts.
    function decode(data) {
        if (!data || !Array.isArray(data.names) || !Array.isArray(data.children)) {
            throw new Error("The chart's data is missing.");
        }
        const n = data.names.length;
        if (n < 1 || data.children.length !== n || typeof data.colours !== "string" ||
            data.colours.length !== 6 * n || !Array.isArray(data.samples) || data.samples.length < 1) {
            throw new Error("The chart's data is damaged.");
        }
        const parent = new Int32Array(n).fill(-1);
        const children = new Array(n);
        for (let i = 0; i < n; ++i) {
            children[i] = [];
        }
        // Nodes come parents first, depth first, each with its number of children.
        const open = [[0, data.children[0]]];
        for (let i = 1; i < n; ++i) {
            while (open.length > 0 && open[open.length - 1][1] === 0) {
                open.pop();
            }
            if (open.length === 0) {
                throw new Error("The chart's data is damaged.");
            }
            const top = open[open.length - 1];
            top[1] -= 1;
            parent[i] = top[0];
            children[top[0]].push(i);
            open.push([i, data.children[i]]);
        }
        if (open.some(function (entry) { return entry[1] !== 0; })) {
            throw new Error("The chart's data is damaged.");
        }
        const colours = new Array(n);
        for (let i = 0; i < n; ++i) {
            colours[i] = "#" + data.colours.substr(6 * i, 6);
        }
        const samples = data.samples.map(function (sample) {
            if (!Array.isArray(sample.totals) || sample.totals.length !== n ||
                !Array.isArray(sample.counts) || sample.counts.length !== n) {
                throw new Error("The chart's data is damaged.");
            }
            return { name: String(sample.name), totals: sample.totals, counts: sample.counts };
        });
        const view = data.view || {};
        return {
            size: n,
            title: String(data.title || ""),
            names: data.names.map(String),
            parent: parent,
            children: children,
            colours: colours,
            samples: samples,
            othersGrey: (data.greys && data.greys.others) || "#bdbdbd",
            view: {
                maxLevels: clampLevels(view.maxLevels === undefined ? 5 : view.maxLevels),
                minPercent: clampPercent(view.minPercent === undefined ? 0.5 : view.minPercent),
                collapse: view.collapse !== false,
                centre: Number.isInteger(view.centre) && view.centre >= 0 && view.centre < n ? view.centre : 0,
            },
        };
    }

    function clampLevels(value) {
        const levels = Math.round(Number(value));
        return Number.isFinite(levels) ? Math.min(Math.max(levels, 1), 50) : 5;
    }

    function clampPercent(value) {
        const percent = Number(value);
        return Number.isFinite(percent) ? Math.min(Math.max(percent, 0), 100) : 0.5;
    }

    // A node with no own count whose single counted child holds all of it: drawn as one with it.
    function onlyChild(tree, sample, node) {
        if (sample.counts[node] !== 0 || !(sample.totals[node] > 0)) {
            return -1;
        }
        let counted = -1;
        for (const child of tree.children[node]) {
            if (sample.totals[child] > 0) {
                if (counted >= 0) {
                    return -1;
                }
                counted = child;
            }
        }
        return counted >= 0 && sample.totals[counted] === sample.totals[node] ? counted : -1;
    }

    // The slices drawn with the node in the centre: angles in radians, counter-clockwise from +x,
    // ring 0 the centre disc.
    function layout(tree, sample, centre, options) {
        const totals = sample.totals;
        const whole = totals[centre];
        const slices = [];
        if (!(whole > 0)) {
            return slices;
        }
        const least = options.minPercent / 100 * (1 - 1e-12);
        const chainFrom = function (node) {
            const chain = [node];
            for (let next = node; options.collapse;) {
                next = onlyChild(tree, sample, next);
                if (next < 0) {
                    break;
                }
                chain.push(next);
            }
            return chain;
        };
        const place = function (node, ring, start, parentSlice) {
            const chain = chainFrom(node);
            const deepest = chain[chain.length - 1];
            const slice = {
                kind: "taxon", node: deepest, chain: chain, ring: ring, start: start,
                span: totals[node] / whole * FULL, total: totals[node], parent: parentSlice, leaf: true,
            };
            const index = slices.length;
            slices.push(slice);
            if (ring + 1 >= options.maxLevels) {
                return;
            }
            let angle = start;
            let dropped = 0;
            let droppedTotal = 0;
            for (const child of tree.children[deepest]) {
                const total = totals[child];
                if (total >= 1 && total / whole >= least) {
                    slice.leaf = false;
                    place(child, ring + 1, angle, index);
                    angle += total / whole * FULL;
                } else if (total > 0) {
                    dropped += 1;
                    droppedTotal += total;
                }
            }
            if (dropped > 0) {
                slice.leaf = false;
                slices.push({
                    kind: "others", node: -1, chain: [], ring: ring + 1, start: angle,
                    span: droppedTotal / whole * FULL, total: droppedTotal, parent: index, leaf: true,
                    dropped: dropped,
                });
            }
        };
        place(centre, 0, 0, -1);
        return slices;
    }

    function point(radius, angle) {
        return fixed(radius * Math.cos(angle)) + " " + fixed(-radius * Math.sin(angle));
    }

    function fixed(value) {
        return String(Math.round(value * 100) / 100);
    }

    // The outline of a slice as SVG path data.
    function slicePath(slice) {
        const inner = slice.ring === 0 ? 0 : slice.ring * RING;
        const outer = (slice.ring + 1) * RING;
        if (slice.span >= FULL - 1e-9) {
            const circle = function (r) {
                return "M" + fixed(r) + " 0A" + fixed(r) + " " + fixed(r) + " 0 1 0 " + fixed(-r) + " 0A" +
                    fixed(r) + " " + fixed(r) + " 0 1 0 " + fixed(r) + " 0Z";
            };
            return inner > 0 ? circle(outer) + circle(inner) : circle(outer);
        }
        const end = slice.start + slice.span;
        const large = slice.span > Math.PI ? 1 : 0;
        let d = "M" + point(outer, slice.start) + "A" + fixed(outer) + " " + fixed(outer) + " 0 " + large + " 0 " +
            point(outer, end);
        if (inner > 0) {
            d += "L" + point(inner, end) + "A" + fixed(inner) + " " + fixed(inner) + " 0 " + large + " 1 " +
                point(inner, slice.start);
        } else {
            d += "L0 0";
        }
        return d + "Z";
    }

    function linear(channel) {
        return channel <= 0.03928 ? channel / 12.92 : Math.pow((channel + 0.055) / 1.055, 2.4);
    }

    function luminance(hex) {
        const value = parseInt(hex.slice(1), 16);
        return 0.2126 * linear(((value >> 16) & 255) / 255) + 0.7152 * linear(((value >> 8) & 255) / 255) +
            0.0722 * linear((value & 255) / 255);
    }

    // Black or white, whichever contrasts more with the fill.
    function labelColour(fill) {
        const l = luminance(fill);
        return (l + 0.05) / 0.05 >= 1.05 / (l + 0.05) ? "#000000" : "#ffffff";
    }

    // Where a slice's label goes, inside the room the slice owns: along its arc, else radially
    // (in its ring, or beyond it for a leaf), shrunk down to minScale, else elided; null when even
    // that does not fit. measure(text) gives the width of the text at FONT_SIZE.
    function placeLabel(slice, text, measure, minScale, reach) {
        if (!text || slice.span <= 0) {
            return null;
        }
        const height = FONT_SIZE * 1.2;
        const width = measure(text);
        const fitScale = function (length, room) {
            return length <= 0 || room <= 0 ? 0 : Math.min(Math.max(1, minScale), length / width, room / height);
        };
        const finish = function (fit, shown) {
            const label = Object.assign({}, fit, { text: shown });
            label.size = FONT_SIZE * fit.scale;
            return label;
        };
        const elide = function (fit) {
            if (fit.room < height * minScale || fit.length <= 0) {
                return null;
            }
            const limit = fit.length / minScale;
            let shown = text;
            while (shown.length > 1 && measure(shown + "\u2026") > limit) {
                shown = shown.slice(0, -1);
            }
            shown = shown.trimEnd() + "\u2026";
            return shown.length < 3 ? null : finish(Object.assign({}, fit, { scale: minScale }), shown);
        };
        if (slice.ring === 0) {
            const fit = { kind: "straight", length: 1.8 * RING - 2 * PADDING, room: 1.2 * RING };
            fit.scale = fitScale(fit.length, fit.room);
            return fit.scale >= minScale ? finish(fit, text) : elide(fit);
        }
        const inner = slice.ring * RING;
        const middle = inner + RING / 2;
        const span = Math.min(slice.span, FULL);
        const mid = slice.start + span / 2;
        const arc = { kind: "arc", radius: middle, angle: mid, upper: Math.sin(mid) > 1e-9,
            length: middle * span - 2 * PADDING, room: RING - 2 * PADDING };
        arc.scale = fitScale(arc.length, arc.room);
        let radial = { kind: "radial", scale: 0, length: 0, room: 0 };
        if (span < WIDEST_RADIAL) {
            const from = function (start, end, outside) {
                const fit = { kind: "radial", angle: mid, right: Math.cos(mid) >= 0, outside: outside, start: start,
                    length: end - PADDING - start, room: 2 * start * Math.sin(span / 2) - 2 * PADDING };
                fit.scale = fitScale(fit.length, fit.room);
                return fit;
            };
            const outer = inner + RING;
            radial = from(inner + PADDING, outer, false);
            if (slice.leaf && reach > outer + 2 * PADDING) {
                const beyond = from(outer + PADDING, reach, true);
                if (beyond.scale > radial.scale) {
                    radial = beyond;
                }
            }
        }
        const best = arc.scale >= 1 || arc.scale >= ARC_PREFERENCE * radial.scale ? arc : radial;
        if (best.scale >= minScale) {
            return finish(best, text);
        }
        let chosen = null;
        for (const fit of [arc, radial]) {
            const elided = elide(fit);
            if (elided && (!chosen || elided.text.length > chosen.text.length)) {
                chosen = elided;
            }
        }
        return chosen;
    }

    function escapeText(text) {
        return String(text).replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;")
            .replace(/"/g, "&quot;");
    }

    // The label's SVG: text on an arc path (defined under the id), or a turned straight text.
    function labelSvg(label, colour, id) {
        const fill = " fill=\"" + colour + "\" font-size=\"" + fixed(label.size) + "\"";
        const text = escapeText(label.text);
        if (label.kind === "straight") {
            return "<text class=\"label\" text-anchor=\"middle\" dy=\"0.35em\"" + fill + ">" + text + "</text>";
        }
        if (label.kind === "arc") {
            // Clockwise over the top, counter-clockwise underneath, so that letters stand upright;
            // the baseline lies below the middle of the ring's width either way.
            const shift = 0.35 * label.size;
            const r = label.upper ? label.radius - shift : label.radius + shift;
            const half = Math.min(Math.PI * 0.999, Math.max(label.length / label.radius / 2 + 0.05, 0.1));
            const from = label.upper ? label.angle + half : label.angle - half;
            const to = label.upper ? label.angle - half : label.angle + half;
            const sweep = label.upper ? 1 : 0;
            const mid = "A" + fixed(r) + " " + fixed(r) + " 0 0 " + sweep + " ";
            const path = "M" + point(r, from) + mid + point(r, label.angle) + mid + point(r, to);
            return "<path id=\"" + id + "\" d=\"" + path + "\" fill=\"none\"/>" +
                "<text class=\"label\" text-anchor=\"middle\"" + fill + "><textPath href=\"#" + id +
                "\" startOffset=\"50%\">" + text + "</textPath></text>";
        }
        // Radial: centred in the ring, or from just beyond it outwards, upright on either side.
        const at = label.outside ? label.start : label.start + label.length / 2;
        const anchor = label.outside ? (label.right ? "start" : "end") : "middle";
        const degrees = label.angle * 180 / Math.PI;
        const turn = label.right ? -degrees : 180 - degrees;
        return "<text class=\"label\" text-anchor=\"" + anchor + "\" dy=\"0.35em\" transform=\"translate(" +
            point(at, label.angle) + ") rotate(" + fixed(turn) + ")\"" + fill + ">" + text + "</text>";
    }

    // The shown name of a slice: the deepest name of its chain, or "N others".
    function sliceName(tree, slice) {
        if (slice.kind === "others") {
            return slice.dropped === 1 ? "1 other" : slice.dropped + " others";
        }
        return tree.names[slice.node];
    }

    function chainText(tree, slice) {
        return slice.kind === "others" ? sliceName(tree, slice)
            : slice.chain.map(function (node) { return tree.names[node]; }).join(CHAIN_SEPARATOR);
    }

    // The nodes from the root down to the node.
    function pathTo(tree, node) {
        const path = [];
        for (let at = node; at >= 0; at = tree.parent[at]) {
            path.unshift(at);
        }
        return path;
    }

    // Where stepping out of the centre goes: the nearest ancestor that is not drawn as one with it.
    function stepOutTarget(tree, sample, centre, collapse) {
        let target = tree.parent[centre];
        while (target >= 0 && collapse && tree.parent[target] >= 0 && onlyChild(tree, sample, target) >= 0) {
            target = tree.parent[target];
        }
        return target;
    }

    // The nodes whose names hold the query, in any case; none for an empty query.
    function search(tree, query) {
        const wanted = String(query || "").trim().toLowerCase();
        const found = [];
        if (!wanted) {
            return found;
        }
        for (let i = 0; i < tree.size; ++i) {
            if (tree.names[i].toLowerCase().indexOf(wanted) >= 0) {
                found.push(i);
            }
        }
        return found;
    }

    // For each drawn slice: "match" when a node it stands for matches, "inside" when a match lies
    // in the part of its subtree that is not drawn.
    function highlights(tree, slices, matches) {
        const sliceOf = new Map();
        slices.forEach(function (slice, index) {
            for (const node of slice.chain) {
                sliceOf.set(node, index);
            }
        });
        const marks = new Array(slices.length).fill("");
        let drawn = 0;
        for (const match of matches) {
            if (sliceOf.has(match)) {
                marks[sliceOf.get(match)] = "match";
                drawn += 1;
                continue;
            }
            for (let at = tree.parent[match]; at >= 0; at = tree.parent[at]) {
                if (sliceOf.has(at)) {
                    const index = sliceOf.get(at);
                    if (marks[index] === "") {
                        marks[index] = "inside";
                    }
                    break;
                }
            }
        }
        return { marks: marks, drawn: drawn };
    }

    function formatCount(value) {
        return Number(value).toLocaleString("en-US");
    }

    function formatShare(part, whole) {
        if (!(whole > 0)) {
            return "0 %";
        }
        const percent = 100 * part / whole;
        if (percent > 0 && percent < 0.01) {
            return "< 0.01 %";
        }
        return (percent >= 10 ? percent.toFixed(1) : percent.toFixed(2)) + " %";
    }

    // The whole drawing of a chart as SVG markup, and the label colours it uses.
    function chartSvg(tree, sample, slices, measure, minScale) {
        let deepest = 0;
        for (const slice of slices) {
            deepest = Math.max(deepest, slice.ring);
        }
        const reach = (deepest + 1 + LABEL_BAND) * RING;
        const parts = [];
        const labels = [];
        slices.forEach(function (slice, index) {
            const fill = slice.kind === "others" ? tree.othersGrey : tree.colours[slice.node];
            parts.push("<path class=\"slice\" data-slice=\"" + index + "\" d=\"" + slicePath(slice) + "\" fill=\"" +
                fill + "\"" + (slice.ring > 0 && slice.span >= FULL - 1e-9 ? " fill-rule=\"evenodd\"" : "") + "/>");
            const label = placeLabel(slice, sliceName(tree, slice), measure, minScale, reach);
            if (label) {
                const ground = label.outside ? "#ffffff" : fill;
                labels.push(labelSvg(label, labelColour(ground), "sorvik-label-" + index));
            }
        });
        return { slices: parts.join(""), labels: labels.join(""), radius: reach };
    }

    // ---- The page ----

    function startPage(document, window) {
        const source = document.getElementById("sorvik-data");
        const chart = document.getElementById("chart");
        if (!source || !chart) {
            return null;
        }
        let tree;
        try {
            tree = decode(JSON.parse(source.textContent));
        } catch (error) {
            chart.outerHTML = "<p class=\"error\">" + escapeText(error.message) + "</p>";
            return null;
        }
        const page = new Page(document, window, tree);
        page.render();
        page.runTestHook();
        return page;
    }

    function Page(document, window, tree) {
        this.document = document;
        this.window = window;
        this.tree = tree;
        this.state = {
            sample: 0,
            centre: tree.view.centre,
            maxLevels: tree.view.maxLevels,
            minPercent: tree.view.minPercent,
            collapse: tree.view.collapse,
            query: "",
        };
        this.slices = [];
        this.element = function (id) {
            return document.getElementById(id);
        };
        const canvas = document.createElement("canvas");
        const context = canvas.getContext ? canvas.getContext("2d") : null;
        const family = window.getComputedStyle ? window.getComputedStyle(document.body).fontFamily : "sans-serif";
        const widths = new Map();
        this.measure = function (text) {
            let width = widths.get(text);
            if (width === undefined) {
                if (context) {
                    context.font = FONT_SIZE + "px " + family;
                    width = context.measureText(text).width;
                } else {
                    width = text.length * FONT_SIZE * 0.6;
                }
                widths.set(text, width);
            }
            return width;
        };
        this.bind();
    }

    Page.prototype.sample = function () {
        return this.tree.samples[this.state.sample];
    };

    Page.prototype.bind = function () {
        const self = this;
        const levels = this.element("levels");
        const percent = this.element("min-percent");
        const query = this.element("search");
        const chooser = this.element("sample");
        this.document.title = this.tree.title ? this.tree.title + " \u2013 Sorvik" : "Sorvik chart";
        this.element("title").textContent = this.tree.title;
        levels.value = this.state.maxLevels;
        percent.value = this.state.minPercent;
        levels.addEventListener("change", function () {
            self.state.maxLevels = clampLevels(levels.value);
            levels.value = self.state.maxLevels;
            self.render();
        });
        percent.addEventListener("change", function () {
            self.state.minPercent = clampPercent(percent.value);
            percent.value = self.state.minPercent;
            self.render();
        });
        query.addEventListener("input", function () {
            self.state.query = query.value;
            self.highlight();
        });
        if (this.tree.samples.length > 1) {
            chooser.innerHTML = this.tree.samples.map(function (sample, index) {
                return "<option value=\"" + index + "\">" + escapeText(sample.name) + "</option>";
            }).join("");
            chooser.addEventListener("change", function () {
                self.state.sample = Number(chooser.value) || 0;
                self.render();
            });
        } else {
            this.element("sample-control").hidden = true;
        }
        const chart = this.element("chart");
        chart.addEventListener("click", function (event) {
            const index = self.sliceAt(event.target);
            if (index >= 0) {
                self.click(index);
            }
        });
        chart.addEventListener("mousemove", function (event) {
            self.hover(self.sliceAt(event.target), event);
        });
        chart.addEventListener("mouseleave", function () {
            self.hover(-1, null);
        });
        this.window.addEventListener("resize", function () {
            clearTimeout(self.resizeTimer);
            self.resizeTimer = setTimeout(function () { self.render(); }, 150);
        });
    };

    Page.prototype.sliceAt = function (target) {
        const index = target && target.getAttribute ? target.getAttribute("data-slice") : null;
        return index === null ? -1 : Number(index);
    };

    // The centre steps out; any other taxon becomes the centre.
    Page.prototype.click = function (index) {
        const slice = this.slices[index];
        if (!slice || slice.kind === "others") {
            return;
        }
        if (slice.ring === 0) {
            const target = stepOutTarget(this.tree, this.sample(), this.state.centre, this.state.collapse);
            if (target < 0) {
                return;
            }
            this.state.centre = target;
        } else {
            this.state.centre = slice.chain[0];
        }
        this.render();
    };

    Page.prototype.goTo = function (node) {
        this.state.centre = node;
        this.render();
    };

    Page.prototype.render = function () {
        const sample = this.sample();
        // A taxon absent from the chosen sample: the nearest ancestor that is present.
        while (this.state.centre > 0 && !(sample.totals[this.state.centre] > 0)) {
            this.state.centre = this.tree.parent[this.state.centre];
        }
        this.slices = layout(this.tree, sample, this.state.centre, this.state);
        const chart = this.element("chart");
        const pixels = Math.max(1, Math.min(chart.clientWidth || 800, chart.clientHeight || 800));
        let radius = 0;
        for (const slice of this.slices) {
            radius = Math.max(radius, (slice.ring + 1 + LABEL_BAND) * RING);
        }
        radius = Math.max(radius, RING);
        const pixelsPerUnit = pixels / (2 * radius);
        const minScale = Math.min(1, Math.max(0.3, SMALLEST_PIXELS / (FONT_SIZE * pixelsPerUnit)));
        const drawing = chartSvg(this.tree, sample, this.slices, this.measure, minScale);
        chart.setAttribute("viewBox", [-radius, -radius, 2 * radius, 2 * radius].map(fixed).join(" "));
        this.element("slices").innerHTML = drawing.slices;
        this.element("labels").innerHTML = drawing.labels;
        this.renderPath();
        this.highlight();
    };

    Page.prototype.renderPath = function () {
        const self = this;
        const nav = this.element("path");
        nav.innerHTML = "";
        const nodes = pathTo(this.tree, this.state.centre);
        nodes.forEach(function (node, index) {
            if (index > 0) {
                nav.appendChild(self.document.createTextNode(CHAIN_SEPARATOR));
            }
            const last = index === nodes.length - 1;
            const item = self.document.createElement(last ? "span" : "button");
            item.textContent = self.tree.names[node];
            item.className = last ? "current" : "step";
            if (!last) {
                item.type = "button";
                item.addEventListener("click", function () { self.goTo(node); });
            }
            nav.appendChild(item);
        });
    };

    Page.prototype.highlight = function () {
        const found = search(this.tree, this.state.query);
        const result = highlights(this.tree, this.slices, found);
        const paths = this.element("slices").children;
        for (let i = 0; i < paths.length; ++i) {
            const mark = result.marks[i] || "";
            paths[i].setAttribute("class", mark ? "slice " + mark : "slice");
        }
        this.element("chart").classList.toggle("searching", found.length > 0);
        const status = this.element("search-result");
        if (!String(this.state.query).trim()) {
            status.textContent = "";
        } else if (found.length === 0) {
            status.textContent = "No taxon matches.";
        } else {
            status.textContent = found.length + (found.length === 1 ? " taxon matches, " : " taxa match, ") +
                result.drawn + " drawn";
        }
        return result;
    };

    Page.prototype.hover = function (index, event) {
        const tip = this.element("tooltip");
        const slice = this.slices[index];
        if (!slice || !event) {
            tip.hidden = true;
            return;
        }
        const sample = this.sample();
        const whole = sample.totals[0];
        const centre = sample.totals[this.state.centre];
        tip.innerHTML = "<strong>" + escapeText(chainText(this.tree, slice)) + "</strong><br>Count " +
            formatCount(slice.total) + " \u00b7 " + formatShare(slice.total, centre) + " of the centre \u00b7 " +
            formatShare(slice.total, whole) + " of the whole chart";
        tip.hidden = false;
        tip.style.left = (event.clientX + 14) + "px";
        tip.style.top = (event.clientY + 14) + "px";
    };

    Page.prototype.report = function () {
        const self = this;
        return {
            centre: this.tree.names[this.state.centre],
            path: pathTo(this.tree, this.state.centre).map(function (node) { return self.tree.names[node]; }),
            slices: this.slices.map(function (slice) { return sliceName(self.tree, slice); }),
            drawnPaths: this.element("slices").children.length,
            labels: this.element("labels").querySelectorAll("text").length,
            sample: this.sample().name,
            ms: Math.round(this.window.performance ? this.window.performance.now() : 0),
        };
    };

    // With "#sorvik-test" in the address, the page reports what it drew into #sorvik-test-report:
    // before anything, after choosing the sample "sample=NAME", after clicking each slice named in
    // "click=NAME,NAME…" in turn, and after searching for "search=TEXT".
    Page.prototype.runTestHook = function () {
        const hash = decodeURIComponent(String(this.window.location ? this.window.location.hash : ""));
        if (hash.indexOf("#sorvik-test") !== 0) {
            return;
        }
        const options = {};
        hash.slice(1).split("&").forEach(function (part) {
            const equals = part.indexOf("=");
            if (equals > 0) {
                options[part.slice(0, equals)] = part.slice(equals + 1);
            }
        });
        const self = this;
        const result = { before: this.report(), steps: [] };
        if (options.sample !== undefined) {
            const chooser = this.element("sample");
            chooser.value = String(this.tree.samples.findIndex(function (s) { return s.name === options.sample; }));
            chooser.dispatchEvent(new this.window.Event("change"));
            result.sampled = this.report();
            result.sampled.choices = chooser.options.length;
            result.sampled.chooserShown = !this.element("sample-control").hidden;
        }
        (options.click ? options.click.split(",") : []).forEach(function (name) {
            const index = self.slices.findIndex(function (slice) {
                return sliceName(self.tree, slice) === name;
            });
            const target = self.element("slices").children[index];
            if (target) {
                target.dispatchEvent(new self.window.MouseEvent("click", { bubbles: true }));
            }
            const step = self.report();
            step.clicked = target ? name : null;
            result.steps.push(step);
        });
        if (options.search !== undefined) {
            const box = this.element("search");
            box.value = options.search;
            box.dispatchEvent(new this.window.Event("input"));
            result.search = {
                status: this.element("search-result").textContent,
                matches: this.element("slices").querySelectorAll(".match").length,
            };
        }
        const out = this.element("sorvik-test-report");
        out.textContent = JSON.stringify(result);
        const window = this.window;
        if (window.requestAnimationFrame) {
            window.requestAnimationFrame(function () {
                window.requestAnimationFrame(function () {
                    result.paintedMs = Math.round(window.performance.now());
                    out.textContent = JSON.stringify(result);
                });
            });
        }
    };

    return {
        RING: RING,
        FONT_SIZE: FONT_SIZE,
        decode: decode,
        onlyChild: onlyChild,
        layout: layout,
        slicePath: slicePath,
        labelColour: labelColour,
        placeLabel: placeLabel,
        labelSvg: labelSvg,
        sliceName: sliceName,
        chainText: chainText,
        pathTo: pathTo,
        stepOutTarget: stepOutTarget,
        search: search,
        highlights: highlights,
        formatShare: formatShare,
        chartSvg: chartSvg,
        clampLevels: clampLevels,
        clampPercent: clampPercent,
        escapeText: escapeText,
        startPage: startPage,
    };
});

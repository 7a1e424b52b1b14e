// Tests of the interactive chart page's logic, run with Node.js's own test runner.
"use strict";

const test = require("node:test");
const assert = require("node:assert/strict");
const path = require("node:path");

const chart = require(path.join(process.env.SORVIK_SOURCE_DIR || path.join(__dirname, "..", ".."),
    "resources", "html", "chart.js"));

// A tree literal's data as the exporter writes it: nodes depth first with their children's
// number; every node's own count given, totals summed.
function dataOf(nodes, extraSamples) {
    const names = [];
    const children = [];
    const counts = [];
    const walk = function (node) {
        names.push(node.name);
        children.push((node.children || []).length);
        counts.push(node.count || 0);
        (node.children || []).forEach(walk);
    };
    walk(nodes);
    const totals = totalsOf(names.length, children, counts);
    const samples = [{ name: "one", counts: counts, totals: totals }].concat(extraSamples || []);
    return {
        format: 1, title: "test", view: { maxLevels: 5, minPercent: 0, collapse: true },
        greys: { others: "#bdbdbd" }, names: names, children: children,
        colours: names.map(function (name, i) { return (0x102030 + i * 0x010101).toString(16); }).join(""),
        samples: samples,
    };
}

function totalsOf(n, children, counts) {
    const totals = counts.slice();
    const parent = new Array(n).fill(-1);
    const open = [[0, children[0]]];
    for (let i = 1; i < n; ++i) {
        while (open[open.length - 1][1] === 0) {
            open.pop();
        }
        open[open.length - 1][1] -= 1;
        parent[i] = open[open.length - 1][0];
        open.push([i, children[i]]);
    }
    for (let i = n - 1; i > 0; --i) {
        totals[parent[i]] += totals[i];
    }
    return totals;
}

const life = {
    name: "root", children: [
        { name: "cellular organisms", children: [
            { name: "Bacteria", children: [
                { name: "Firmicutes", count: 40, children: [{ name: "Bacilli", count: 20 }] },
                { name: "Proteobacteria", count: 30 },
                { name: "Tiny", count: 1 },
            ] },
        ] },
        { name: "unclassified", count: 9 },
    ],
};

function names(tree, slices) {
    return slices.map(function (slice) { return chart.sliceName(tree, slice); });
}

test("decode rebuilds parents and children from the depth-first child numbers", function () {
    const tree = chart.decode(dataOf(life));
    assert.deepEqual(Array.from(tree.parent), [-1, 0, 1, 2, 3, 2, 2, 0]);
    assert.deepEqual(tree.children[2], [3, 5, 6]);
    assert.equal(tree.colours[1], "#112131");
});

test("decode refuses damaged data", async function (t) {
    const rows = [
        ["no names", function (d) { delete d.names; }],
        ["too few colours", function (d) { d.colours = d.colours.slice(6); }],
        ["more children than nodes", function (d) { d.children[0] = 9; }],
        ["fewer children than nodes", function (d) { d.children[2] = 1; }],
        ["a sample too short", function (d) { d.samples[0].totals.pop(); }],
        ["no sample", function (d) { d.samples = []; }],
    ];
    for (const [name, damage] of rows) {
        await t.test(name, function () {
            const data = dataOf(life);
            damage(data);
            assert.throws(function () { chart.decode(data); }, /data/);
        });
    }
});

test("chains are drawn as one slice named after their deepest node", function () {
    const tree = chart.decode(dataOf(life));
    const sample = tree.samples[0];
    const slices = chart.layout(tree, sample, 0, { maxLevels: 5, minPercent: 0, collapse: true });
    // The root holds no count but has two counted children: no chain.
    assert.deepEqual(names(tree, slices).slice(0, 3), ["root", "Bacteria", "Firmicutes"]);
    assert.deepEqual(slices[1].chain, [1, 2]);
    const flat = chart.layout(tree, sample, 0, { maxLevels: 5, minPercent: 0, collapse: false });
    assert.deepEqual(names(tree, flat).slice(0, 3), ["root", "cellular organisms", "Bacteria"]);
});

test("a node with its own count is no chain", function () {
    const data = dataOf({ name: "r", children: [{ name: "a", count: 2, children: [{ name: "b", count: 3 }] }] });
    const tree = chart.decode(data);
    assert.equal(chart.onlyChild(tree, tree.samples[0], 1), -1);
    assert.equal(chart.onlyChild(tree, tree.samples[0], 0), 1);
});

test("levels count drawn rings, after collapsing", async function (t) {
    const tree = chart.decode(dataOf(life));
    for (const [levels, rings] of [[1, [0]], [2, [0, 1]], [3, [0, 1, 2]], [50, [0, 1, 2, 3]]]) {
        await t.test(levels + " levels", function () {
            const slices = chart.layout(tree, tree.samples[0], 0, { maxLevels: levels, minPercent: 0, collapse: true });
            assert.deepEqual(Array.from(new Set(slices.map(function (s) { return s.ring; }))), rings);
        });
    }
});

test("children below the minimum share become one grey others slice after the kept ones", function () {
    const tree = chart.decode(dataOf(life));
    // Tiny holds 1 of 100: kept at exactly 1 %, dropped above it.
    const at = function (percent) {
        return chart.layout(tree, tree.samples[0], 0, { maxLevels: 5, minPercent: percent, collapse: true });
    };
    assert.ok(names(tree, at(1)).includes("Tiny"));
    const slices = at(1.01);
    assert.ok(!names(tree, slices).includes("Tiny"));
    const others = slices.find(function (s) { return s.kind === "others"; });
    assert.equal(chart.sliceName(tree, others), "1 other");
    const proteobacteria = slices.find(function (s) { return s.node === 5; });
    assert.ok(Math.abs(others.start - (proteobacteria.start + proteobacteria.span)) < 1e-12);
    assert.ok(Math.abs(others.span - 2 * Math.PI / 100) < 1e-12);
});

test("siblings lie side by side in file order from their parent's start", function () {
    const tree = chart.decode(dataOf(life));
    const slices = chart.layout(tree, tree.samples[0], 0, { maxLevels: 5, minPercent: 0, collapse: true });
    const firmicutes = slices[2];
    const proteobacteria = slices.find(function (s) { return s.node === 5; });
    assert.equal(firmicutes.start, 0);
    assert.ok(Math.abs(proteobacteria.start - firmicutes.span) < 1e-12);
    assert.ok(Math.abs(firmicutes.span - 2 * Math.PI * 0.6) < 1e-12);
});

test("stepping out skips the chain the centre is drawn with", function () {
    const tree = chart.decode(dataOf(life));
    const sample = tree.samples[0];
    assert.equal(chart.stepOutTarget(tree, sample, 3, true), 2);
    // Bacteria's parent "cellular organisms" is a chain: out to the root.
    assert.equal(chart.stepOutTarget(tree, sample, 2, true), 0);
    assert.equal(chart.stepOutTarget(tree, sample, 2, false), 1);
    assert.equal(chart.stepOutTarget(tree, sample, 0, true), -1);
});

test("search finds names in any case and marks the slices that hold or hide them", function () {
    const tree = chart.decode(dataOf(life));
    const slices = chart.layout(tree, tree.samples[0], 0, { maxLevels: 3, minPercent: 0, collapse: true });
    const found = chart.search(tree, "  BACIL ");
    assert.deepEqual(found, [4]);
    const marked = chart.highlights(tree, slices, found);
    // Bacilli lies beyond the third ring: Firmicutes is marked as holding it.
    assert.equal(marked.drawn, 0);
    assert.equal(marked.marks[names(tree, slices).indexOf("Firmicutes")], "inside");
    assert.deepEqual(chart.search(tree, ""), []);
    const matched = chart.highlights(tree, slices, chart.search(tree, "cellular"));
    assert.equal(matched.marks[1], "match");
});

test("labels are black or white, whichever reads better", async function (t) {
    for (const [fill, expected] of [["#ffffff", "#000000"], ["#000000", "#ffffff"], ["#ffff00", "#000000"],
        ["#0000ff", "#ffffff"], ["#777777", "#000000"], ["#555555", "#ffffff"]]) {
        await t.test(fill, function () {
            assert.equal(chart.labelColour(fill), expected);
        });
    }
});

test("slice outlines are closed sectors, full rings two circles", function () {
    const quarter = chart.slicePath({ ring: 1, start: 0, span: Math.PI / 2 });
    assert.match(quarter, /^M60 0A60 60 0 0 0 0 -60L0 -30A30 30 0 0 1 30 0Z$/);
    const ring = chart.slicePath({ ring: 2, start: 0, span: 2 * Math.PI });
    assert.equal((ring.match(/M/g) || []).length, 2);
    const large = chart.slicePath({ ring: 1, start: 0, span: 1.5 * Math.PI });
    assert.match(large, /A60 60 0 1 0/);
});

test("labels go along the arc, radially, shrunk, elided, or not at all", async function (t) {
    const measure = function (text) { return text.length * 6; };
    const rows = [
        ["a wide slice reads along its arc", { ring: 1, start: 0, span: 2, leaf: false }, "Bacteria", "arc", "Bacteria"],
        ["a narrow outer slice reads radially", { ring: 3, start: 0, span: 0.15, leaf: false }, "Gamma", "radial",
            "Gamma"],
        ["a narrow leaf runs beyond its ring", { ring: 3, start: 0, span: 0.12, leaf: true }, "Escherichia coli",
            "radial", "Escherichia coli"],
        ["a long name is elided", { ring: 1, start: 0, span: 1.6, leaf: false },
            "Pseudomonadota of a very long name indeed", "arc", null],
        ["a sliver gets none", { ring: 1, start: 0, span: 0.001, leaf: false }, "Bacteria", null, null],
        ["the centre reads straight", { ring: 0, start: 0, span: 2 * Math.PI }, "root", "straight", "root"],
    ];
    for (const [name, slice, text, kind, shown] of rows) {
        await t.test(name, function () {
            const label = chart.placeLabel(slice, text, measure, 0.6, 6.5 * chart.RING);
            if (kind === null) {
                assert.equal(label, null);
                return;
            }
            assert.equal(label.kind, kind);
            if (shown === null) {
                assert.ok(label.text.endsWith("\u2026") && label.text.length >= 3 && label.text.length < text.length);
            } else {
                assert.equal(label.text, shown);
            }
            assert.ok(label.size <= chart.FONT_SIZE && label.size >= chart.FONT_SIZE * 0.6 - 1e-9);
        });
    }
});

test("the drawing escapes names and draws one path per slice", function () {
    const data = dataOf({ name: "r", children: [{ name: "<b>&\"x\"</b>", count: 5 }, { name: "y", count: 5 }] });
    const tree = chart.decode(data);
    const slices = chart.layout(tree, tree.samples[0], 0, tree.view);
    const drawing = chart.chartSvg(tree, tree.samples[0], slices, function (t) { return t.length * 6; }, 0.6);
    assert.equal((drawing.slices.match(/<path/g) || []).length, 3);
    assert.ok(!drawing.labels.includes("<b>"));
    assert.ok(drawing.labels.includes("&lt;b&gt;&amp;&quot;x&quot;"));
});

test("a second sample is laid out from its own counts with the same colours", function () {
    const base = dataOf(life);
    const counts = base.samples[0].counts.map(function (c, i) { return i === 5 ? 300 : c; });
    const second = { name: "two", counts: counts, totals: totalsOf(counts.length, base.children, counts) };
    const tree = chart.decode(dataOf(life, [second]));
    const options = { maxLevels: 5, minPercent: 0, collapse: true };
    const first = chart.layout(tree, tree.samples[0], 0, options);
    const other = chart.layout(tree, tree.samples[1], 0, options);
    const spanOf = function (slices) { return slices.find(function (s) { return s.node === 5; }).span; };
    assert.ok(spanOf(other) > spanOf(first));
    assert.equal(tree.samples[1].name, "two");
});

test("shares read as the legend writes them", async function (t) {
    for (const [part, whole, text] of [[1, 8, "12.5 %"], [1, 3, "33.3 %"], [1, 200, "0.50 %"], [1, 1e6, "< 0.01 %"],
        [0, 10, "0.00 %"], [3, 0, "0 %"]]) {
        await t.test(text, function () {
            assert.equal(chart.formatShare(part, whole), text);
        });
    }
});

test("levels and minimum share are clamped to what the page draws", function () {
    assert.equal(chart.clampLevels("0"), 1);
    assert.equal(chart.clampLevels("7.4"), 7);
    assert.equal(chart.clampLevels("900"), 50);
    assert.equal(chart.clampLevels("x"), 5);
    assert.equal(chart.clampPercent("-1"), 0);
    assert.equal(chart.clampPercent("101"), 100);
    assert.equal(chart.clampPercent(""), 0);
});

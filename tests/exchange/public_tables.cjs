const assert = require("node:assert");
const { execFileSync } = require("node:child_process");
const fs = require("node:fs");
const os = require("node:os");
const path = require("node:path");

const [tool] = process.argv.slice(2);
const run = (...parts) => execFileSync(tool, parts, { encoding: "utf8", maxBuffer: 1 << 30 });

// The folder of an installed package, or nothing.
function packageFolder(name) {
  for (const root of (process.env.NODE_PATH ?? "").split(path.delimiter)) {
    const folder = path.join(root, name);
    if (root && fs.existsSync(folder)) return folder;
  }
  console.log(`${name} is not installed`);
}

// What the collection expects otherwise than its own text says.
const corrections = {
  // One record without a list around it, and the expected phone number is not that of the text.
  location_coordinates: (record) => [{ ...record, "Contact Phone Number": "2095257564" }],
};

// Every text gives the cells that are expected.
function checkSpectrum(folder) {
  const texts = fs.readdirSync(path.join(folder, "csvs"));
  assert(texts.length >= 12);
  for (const file of texts) {
    const name = path.basename(file, ".csv");
    let expected = JSON.parse(fs.readFileSync(path.join(folder, "json", name + ".json"), "utf8"));
    if (corrections[name]) expected = corrections[name](expected);
    assert.deepStrictEqual(JSON.parse(run("cells", path.join(folder, "csvs", file))), expected, name);
    console.log(`${name}: as expected`);
  }
}

// Every table is the same when it was saved and opened again.
function checkDatasets(folder) {
  const work = fs.mkdtempSync(path.join(os.tmpdir(), "rowvane-tables-"));
  try {
    const files = fs.readdirSync(path.join(folder, "data")).filter((file) => file.endsWith(".csv"));
    assert(files.length >= 15);
    for (const file of files) {
      console.log(`${file}: ${run("again", path.join(folder, "data", file), path.join(work, "copy.csv")).trim()}`);
    }
  } finally {
    fs.rmSync(work, { recursive: true });
  }
}

const spectrum = packageFolder("csv-spectrum");
const datasets = packageFolder("vega-datasets");
if (spectrum) checkSpectrum(spectrum);
if (datasets) checkDatasets(datasets);
process.exit(spectrum || datasets ? 0 : 77);

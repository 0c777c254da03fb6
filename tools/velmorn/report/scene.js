// The rig's shapes for three.js. All places are in the base camera's frame unless said otherwise.
(function () {
  'use strict';

  const report = {};
  window.velmornReport = report;

  const kEdgeRadius = 0.014; // of a frustum's edges, per depth of the frustum
  const kAxisLength = 1.5;   // per depth of a frustum
  const kAxisRadius = 0.02;
  const kMostGridLines = 400;
  const kNearBox = 0.05; // what is nearer to the rig's box belongs to the first look, of its diagonal
  const kNoCamera = 255;

  // A colour of the style sheet.
  report.styleColour = function (name) {
    const text = getComputedStyle(document.documentElement).getPropertyValue(name).trim();
    return new THREE.Color(text);
  };

  // The colour of "panel", "grid" or "muted", on the screen or on paper.
  report.isOnPaper = false;
  report.surfaceColour = function (name) {
    return report.styleColour((report.isOnPaper ? '--on-paper-' : '--') + name);
  };

  report.cameraColour = function (number) { return report.styleColour('--camera-' + number); };

  function vector(list) { return new THREE.Vector3(list[0], list[1], list[2]); }

  // From rows, 3x3 or 4x4.
  function matrixFrom(rows) {
    const at = (r, c) => (rows[r] && rows[r][c] !== undefined ? rows[r][c] : r === c ? 1 : 0);
    const m = [];
    for (let r = 0; r < 4; ++r) for (let c = 0; c < 4; ++c) m.push(at(r, c));
    return new THREE.Matrix4().set(...m);
  }

  function rod(from, to, radius, material) {
    const along = to.clone().sub(from);
    const mesh = new THREE.Mesh(
        new THREE.CylinderBufferGeometry(radius, radius, along.length(), 8), material);
    mesh.position.copy(from).addScaledVector(along, 0.5);
    mesh.quaternion.setFromUnitVectors(new THREE.Vector3(0, 1, 0), along.normalize());
    return mesh;
  }

  function lines(flat, colour) {
    const geometry = new THREE.BufferGeometry();
    geometry.setAttribute('position', new THREE.BufferAttribute(new Float32Array(flat), 3));
    return new THREE.LineSegments(geometry, new THREE.LineBasicMaterial({color: colour}));
  }

  function faces(tip, image, colour) {
    const flat = [];
    image.forEach((corner, i) => {
      const next = image[(i + 1) % image.length];
      flat.push(...tip.toArray(), ...corner.toArray(), ...next.toArray());
    });
    const geometry = new THREE.BufferGeometry();
    geometry.setAttribute('position', new THREE.BufferAttribute(new Float32Array(flat), 3));
    return new THREE.Mesh(geometry, new THREE.MeshBasicMaterial({
      color: colour, transparent: true, opacity: 0.16, side: THREE.DoubleSide, depthWrite: false
    }));
  }

  // Corners of the drawn image, in the camera's frame.
  function imageCorners(camera, depth) {
    return camera.corners.map(([x, y]) => new THREE.Vector3(x * depth, y * depth, depth));
  }

  // Flat on paper, seen through.
  function sheet(outline, colour) {
    const geometry = new THREE.BufferGeometry();
    const flat = [0, 1, 2, 0, 2, 3].reduce((all, i) => all.concat(outline[i]), []);
    geometry.setAttribute('position', new THREE.BufferAttribute(new Float32Array(flat), 3));
    return new THREE.Mesh(geometry, new THREE.MeshBasicMaterial({
      color: colour, transparent: true, opacity: 0.07, side: THREE.DoubleSide, depthWrite: false
    }));
  }

  // A triangle over the image's upper edge says which way up the image is.
  function upMark(image, material) {
    const left = image[0], right = image[1];
    const up = left.clone().sub(image[3]).multiplyScalar(0.18);
    const from = left.clone().lerp(right, 0.35), to = left.clone().lerp(right, 0.65);
    const top = left.clone().lerp(right, 0.5).add(up);
    const geometry = new THREE.BufferGeometry();
    geometry.setAttribute('position', new THREE.BufferAttribute(
        new Float32Array([...from.toArray(), ...to.toArray(), ...top.toArray()]), 3));
    const twoSided = material.clone();
    twoSided.side = THREE.DoubleSide;
    return new THREE.Mesh(geometry, twoSided);
  }

  function frustum(camera, depth) {
    const group = new THREE.Group();
    const colour = report.cameraColour(camera.colour);
    const material = new THREE.MeshBasicMaterial({color: colour});
    const radius = depth * kEdgeRadius * (camera.isBase ? 1.6 : 1);
    const tip = new THREE.Vector3();
    const image = imageCorners(camera, depth);
    image.forEach((corner, i) => {
      group.add(rod(tip, corner, radius, material));
      group.add(rod(corner, image[(i + 1) % image.length], radius, material));
    });
    group.add(faces(tip, image, colour));
    group.add(upMark(image, material));
    group.matrixAutoUpdate = false;
    group.matrix.copy(matrixFrom(camera.baseFromCam));
    return group;
  }

  function axes(depth) {
    const group = new THREE.Group();
    const colours = ['--camera-1', '--camera-2', '--camera-0'];
    for (let i = 0; i < 3; ++i) {
      const end = new THREE.Vector3().setComponent(i, kAxisLength * depth);
      const material = new THREE.MeshBasicMaterial({color: report.styleColour(colours[i])});
      group.add(rod(new THREE.Vector3(), end, kAxisRadius * depth, material));
    }
    return group;
  }

  function boards(data) {
    const group = new THREE.Group();
    for (const board of data.boards) {
      const flat = [];
      board.outline.forEach((corner, i) => flat.push(...corner, ...board.outline[(i + 1) % 4]));
      const colour = report.cameraColour(board.colour);
      const drawn = new THREE.Group();
      drawn.add(lines(flat, colour), sheet(board.outline, colour));
      drawn.userData.shot = board.shot;
      group.add(drawn);
    }
    return group;
  }

  function links(data) {
    const placed = new Map(data.cameras.map((camera) => [camera.index, camera]));
    const flat = [];
    const tip = (camera) => camera.baseFromCam.slice(0, 3).map((row) => row[3]);
    for (const camera of data.cameras) {
      const parent = placed.get(camera.parent);
      if (parent) flat.push(...tip(camera), ...tip(parent));
    }
    return lines(flat, report.surfaceColour('muted'));
  }

  // In the view's frame, on the ground.
  function grid(data) {
    const cell = data.cell;
    const from = [0, 2].map((i) => Math.floor(data.least[i] / cell - 0.5));
    const to = [0, 2].map((i) => Math.ceil(data.most[i] / cell + 0.5));
    const isDrawn = to[0] - from[0] + to[1] - from[1] <= kMostGridLines;
    const flat = [];
    const y = data.least[1];
    for (let i = from[0]; isDrawn && i <= to[0]; ++i)
      flat.push(i * cell, y, from[1] * cell, i * cell, y, to[1] * cell);
    for (let i = from[1]; isDrawn && i <= to[1]; ++i)
      flat.push(from[0] * cell, y, i * cell, to[0] * cell, y, i * cell);
    return lines(flat, report.surfaceColour('grid'));
  }

  function bytesOf(base64) {
    const text = atob(base64);
    const bytes = new Uint8Array(text.length);
    for (let i = 0; i < text.length; ++i) bytes[i] = text.charCodeAt(i);
    return bytes;
  }

  function positionsOf(cloud) {
    const bytes = bytesOf(cloud.positions);
    const positions = new Float32Array(cloud.count * 3);
    for (let i = 0; i < positions.length; ++i) {
      const steps = bytes[2 * i] + 256 * bytes[2 * i + 1];
      positions[i] = cloud.least[i % 3] + cloud.step[i % 3] * steps;
    }
    return positions;
  }

  function coloursByCamera(cloud, data) {
    const cameras = bytesOf(cloud.cameras);
    const other = report.surfaceColour('muted');
    const byIndex = new Map(
        data.cameras.map((camera) => [camera.index, report.cameraColour(camera.colour)]));
    const colours = new Float32Array(cloud.count * 3);
    cameras.forEach((camera, i) => {
      const colour = (camera !== kNoCamera && byIndex.get(camera)) || other;
      colour.toArray(colours, 3 * i);
    });
    return new THREE.BufferAttribute(colours, 3);
  }

  // The points; userData.attributes holds the colours that they may take.
  function cloudPoints(data) {
    const cloud = data.cloud;
    const geometry = new THREE.BufferGeometry();
    geometry.setAttribute('position', new THREE.BufferAttribute(positionsOf(cloud), 3));
    const attributes = {};
    if (cloud.colours)
      attributes.own = new THREE.BufferAttribute(bytesOf(cloud.colours), 3, true);
    if (cloud.cameras) attributes.camera = coloursByCamera(cloud, data);
    const hasColours = Boolean(cloud.colours || cloud.cameras);
    const material = new THREE.PointsMaterial({
      size: 2, sizeAttenuation: false,
      vertexColors: hasColours ? THREE.VertexColors : THREE.NoColors
    });
    if (!hasColours) material.color = report.surfaceColour('muted');
    const points = new THREE.Points(geometry, material);
    points.userData.attributes = attributes;
    if (hasColours) geometry.setAttribute('color', attributes.own || attributes.camera);
    return points;
  }

  // What the first look has to show, in the view's frame.
  function fitPoints(data, viewFromBase, cloud) {
    const points = [];
    for (const camera of data.cameras) {
      const viewFromCam = viewFromBase.clone().multiply(matrixFrom(camera.baseFromCam));
      points.push(new THREE.Vector3().applyMatrix4(viewFromCam));
      for (const corner of imageCorners(camera, data.frustumDepth))
        points.push(corner.applyMatrix4(viewFromCam));
    }
    for (const board of data.boards)
      for (const corner of board.outline) points.push(vector(corner).applyMatrix4(viewFromBase));
    if (!cloud) return points;
    const box = new THREE.Box3(vector(data.least), vector(data.most));
    box.expandByScalar(kNearBox * box.getSize(new THREE.Vector3()).length());
    const all = cloud.geometry.getAttribute('position');
    const step = Math.max(1, Math.floor(all.count / 3000));
    for (let i = 0; i < all.count; i += step) {
      const point = new THREE.Vector3().fromBufferAttribute(all, i).applyMatrix4(viewFromBase);
      if (box.containsPoint(point)) points.push(point);
    }
    return points;
  }

  function nameSpots(data, viewFromBase) {
    return data.cameras.map((camera) => ({
      text: camera.id + (camera.isBase ? ' (base)' : ''),
      colour: camera.colour,
      place: new THREE.Vector3()
                 .setFromMatrixPosition(matrixFrom(camera.baseFromCam))
                 .applyMatrix4(viewFromBase)
    }));
  }

  function axisSpots(data, viewFromBase) {
    return ['x', 'y', 'z'].map((text, i) => ({
      text: text,
      place: new THREE.Vector3()
                 .setComponent(i, 1.12 * kAxisLength * data.frustumDepth)
                 .applyMatrix4(viewFromBase)
    }));
  }

  // The whole scene by its parts, which may be shown or not.
  report.buildScene = function (data) {
    const viewFromBase = matrixFrom(data.viewFromBase);
    const parts = {
      boards: boards(data),
      links: links(data),
      axes: axes(data.frustumDepth),
      cameras: new THREE.Group()
    };
    for (const camera of data.cameras) parts.cameras.add(frustum(camera, data.frustumDepth));
    if (data.cloud) parts.cloud = cloudPoints(data);
    const inBase = new THREE.Group();
    inBase.matrixAutoUpdate = false;
    inBase.matrix.copy(viewFromBase);
    for (const part of Object.values(parts)) inBase.add(part);
    parts.grid = grid(data);
    const scene = new THREE.Scene();
    scene.add(parts.grid, inBase);
    return {
      scene: scene,
      parts: parts,
      names: nameSpots(data, viewFromBase),
      axisNames: axisSpots(data, viewFromBase),
      fitPoints: fitPoints(data, viewFromBase, parts.cloud)
    };
  };
})();
